#include "cmetry/SpectrumToColorSpace.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/Tristimulus.h"

namespace CMetry {

namespace {

// The x weights of the short-wave lobe of x-bar.
constexpr uint16_t shortWaveLobeCount = 13;
constexpr double minimumHunterRoot = 0.0001;

constexpr float lowLightnessDivisor = 0.511f;
constexpr float lightnessSlope = 0.01765f;
constexpr float lightnessLogFactor = 0.040975f;
constexpr float lightnessOffset = 34.7231f;
constexpr double chromaSlope = 0.181547;
constexpr double chromaLogFactor = 12.253;
constexpr double chromaLogSlope = 0.072158;
constexpr double chromaLogOffset = 0.638;
constexpr double chromaOffset = static_cast<double>(5.50671f);
constexpr float hueOffset = 0.17914f;
constexpr std::array<float, 4> hueSine = {0.13893f, -0.0539f, -0.04029f, -0.01043f};
constexpr std::array<float, 4> hueCosine = {-0.09622f, -0.06742f, -0.02137f, 0.00587f};

void Write(HvColorVector& out, double first, double second, double third)
{
    out[0] = static_cast<float>(first);
    out[1] = static_cast<float>(second);
    out[2] = static_cast<float>(third);
}

double MgLightness(double lightness)
{
    if (lightness < 16.0) {
        return lightness / lowLightnessDivisor;
    }
    return lightnessSlope * lightness + std::log(lightnessLogFactor * lightness) / lightnessLogFactor + lightnessOffset;
}

double MgChroma(double chroma)
{
    return chromaSlope * chroma + chromaLogFactor * std::log(chromaLogSlope * chroma + chromaLogOffset) + chromaOffset;
}

double MgHue(double hue)
{
    const double radians = static_cast<float>(hue * M_PI / 180.0);
    double bent = radians + hueOffset;
    for (std::size_t term = 0; term < hueSine.size(); ++term) {
        const double multiple = static_cast<double>(term + 1) * radians;
        bent += hueSine[term] * std::sin(multiple) + hueCosine[term] * std::cos(multiple);
    }
    return bent * 180.0 / M_PI;
}

}

bool GetLab(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    Utilities::SmartPointer<const Weightfactors> weightfactors;
    if (!GetXYZ(spectrum, conditions, out, weightfactors)) {
        return false;
    }
    const std::array<double, 3> lab = LabOf(&out[0], WhiteOf(*weightfactors));
    Write(out, lab[0], lab[1], lab[2]);
    return true;
}

bool GetLCh(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    if (!GetLab(spectrum, conditions, out)) {
        return false;
    }
    ConvertRectangularToPolar(out, out);
    return true;
}

bool GetxyY(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    return GetXYZ(spectrum, conditions, out) && ConvertXYZToxyY(out, out);
}

bool GetLuv(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    Utilities::SmartPointer<const Weightfactors> weightfactors;
    if (!GetXYZ(spectrum, conditions, out, weightfactors)) {
        return false;
    }
    std::array<double, 3> xyz = {out[0], out[1], out[2]};
    double denominator = xyz[0] + 15.0 * xyz[1] + 3.0 * xyz[2];
    if (denominator == 0.0) {
        if (!GetXYZOfBlackStandIn(HvMeasureConditions(out.GetConditions()), out)) {
            return false;
        }
        xyz = {out[0], out[1], out[2]};
        denominator = xyz[0] + 15.0 * xyz[1] + 3.0 * xyz[2];
    }
    const double lightness = LabOf(&out[0], WhiteOf(*weightfactors))[0];
    Write(out, lightness, 4.0 * xyz[0] / denominator, 9.0 * xyz[1] / denominator);
    return true;
}

bool GetLChuv(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    if (!GetLuv(spectrum, conditions, out)) {
        return false;
    }
    ConvertRectangularToPolar(out, out);
    return true;
}

bool GetLCHmg(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    if (!GetLCh(spectrum, conditions, out)) {
        return false;
    }
    Write(out, MgLightness(out[0]), MgChroma(out[1]), MgHue(out[2]));
    return true;
}

bool GetLABmg(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    if (!GetLCHmg(spectrum, conditions, out)) {
        return false;
    }
    ConvertPolarToRectangular(out, out);
    return true;
}

bool GetHunterLab(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    Utilities::SmartPointer<const Weightfactors> weightfactors;
    if (!GetXYZ(spectrum, conditions, out, weightfactors)) {
        return false;
    }
    const double x = out[0];
    const double y = out[1];
    const double z = out[2];
    // A dark-subtracted black can leave Y a little below 0: it takes the floor, not a NaN root.
    const double root = std::max(std::sqrt(std::max(y, 0.0)), minimumHunterRoot);
    const double a = (100.0 / weightfactors->GetWhitePoint(0) * x - y) * 17.5 / root;
    const double b = (y - 100.0 / weightfactors->GetWhitePoint(2) * z) * 7.0 / root;
    Write(out, 10.0 * root, a, b);
    return true;
}

bool GetRxRyRz(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    Utilities::SmartPointer<const Weightfactors> weightfactors;
    if (!GetXYZ(spectrum, conditions, out, weightfactors)) {
        return false;
    }
    const std::span<const float> xWeights = weightfactors->GetWeights(0);
    double shortWaveSum = 0.0;
    for (uint16_t index = 0; index < shortWaveLobeCount; ++index) {
        shortWaveSum += xWeights[index];
    }
    const double a = shortWaveSum / 100.0;
    const double b = weightfactors->GetWhitePoint(0) / 100.0 - a;
    const double g = weightfactors->GetWhitePoint(2) / 100.0;
    const double x = out[0];
    const double z = out[2];
    Write(out, x / b - a * z / (b * g), out[1], z / g);
    return true;
}

}
