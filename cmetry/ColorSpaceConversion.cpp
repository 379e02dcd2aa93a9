#include "cmetry/ColorSpaceConversion.h"

#include <array>
#include <cmath>

#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ConditionKey.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/Tristimulus.h"
#include "cmetry/WeightfactorCache.h"

namespace CMetry {

using Utilities::String;

namespace {

constexpr float linearSlope = 7.787f;
constexpr float linearOffset = 0.13793103f;
constexpr double cubeRootThreshold = 0.008856;
constexpr double inverseThreshold = 0.206893034423;
constexpr double degreesPerRadian = 57.29577951308232;
constexpr float neutralLimit = 1e-5f;
constexpr float uvOfNoColor1976[2] = {4.0f / 19.0f, 9.0f / 19.0f};
// The level of the spectrum whose chromaticity stands in for black's.
constexpr float blackStandIn = 1e-5f;

WhitePoint WhiteOf(const HvMeasureConditions& conditions)
{
    return WhiteOf(*WeightfactorCache::Update(conditions));
}

// CIE 1976 L*a*b*: CIE 15:2004; the float slope 7.787 and offset 16/116 widen to double as ever.
double LabFunction(double t)
{
    if (t > cubeRootThreshold) {
        return std::pow(t, 1.0 / 3.0);
    }
    return linearSlope * t + linearOffset;
}

double InverseLabFunction(double f, double scale)
{
    if (f > inverseThreshold) {
        return f * f * f * scale;
    }
    return (f - linearOffset) * scale / linearSlope;
}

void Write(HvColorVector& out, const HvColorVector& source, double first, double second, double third)
{
    if (&out != &source) {
        out.SetConditions(source.GetConditions());
    }
    out[0] = static_cast<float>(first);
    out[1] = static_cast<float>(second);
    out[2] = static_cast<float>(third);
    out[3] = 0.0f;
}

void SetColorSpace(HvColorVector& vector, const char* keyword)
{
    vector.GetConditions().SetCondition(String(ConditionKey::colorSpace), String(keyword));
}

// CIE 1976 UCS: CIE 15:2004.
// u', v' of the CIE 1976 diagram, and Y as it is.
bool UVY1976(const HvColorVector& vector, std::array<double, 3>& uvY)
{
    const String& colorSpace = vector.GetConditions().GetColorSpace();
    if (ColorSpaceKeyword::Is(colorSpace, ColorSpaceKeyword::cieXYZ)) {
        const double sum = static_cast<double>(vector[0]) + vector[1] + vector[2];
        const double x = sum != 0.0 ? vector[0] / sum : 0.0;
        const double y = sum != 0.0 ? vector[1] / sum : 0.0;
        const double z = sum != 0.0 ? vector[2] / sum : 0.0;
        const double denominator = x + 15.0 * y + 3.0 * z;
        uvY = denominator == 0.0 ? std::array<double, 3>{uvOfNoColor1976[0], uvOfNoColor1976[1], vector[1]}
                                 : std::array<double, 3>{4.0 * x / denominator, 9.0 * y / denominator, vector[1]};
        return true;
    }
    if (ColorSpaceKeyword::Is(colorSpace, ColorSpaceKeyword::ciexyY)) {
        const double x = vector[0];
        const double y = vector[1];
        const double denominator = -2.0 * x + 12.0 * y + 3.0;
        uvY = vector[2] == 0.0f ? std::array<double, 3>{uvOfNoColor1976[0], uvOfNoColor1976[1], vector[2]}
                                : std::array<double, 3>{4.0 * x / denominator, 9.0 * y / denominator, vector[2]};
        return true;
    }
    return false;
}

}

// The white of the weights, its Y the one its own weights give, so that the perfect diffuser is
// exactly neutral (100 would leave a* up to 8e-5 off 0). A set of weights that could not be built has no white; asking
// it for its weights raises the failure that left it without.
WhitePoint WhiteOf(const Weightfactors& weightfactors)
{
    if (!weightfactors.HasWeights()) {
        weightfactors.GetWeights(0);
    }
    const double y = weightfactors.IsEmission() ? weightfactors.GetWhitePoint(1) : weightfactors.GetPerfectDiffuserY();
    return {weightfactors.GetWhitePoint(0), y, weightfactors.GetWhitePoint(2)};
}

std::array<double, 3> LabOf(const float* xyz, const WhitePoint& white)
{
    std::array<double, 3> f;
    for (std::size_t axis = 0; axis < f.size(); ++axis) {
        const double t = static_cast<double>(xyz[axis]) * white[1] / white[axis] / 100.0;
        f[axis] = LabFunction(t);
    }
    const double lightness = 116.0 * f[1] - 16.0;
    return {lightness < 0.0 ? 0.0 : lightness, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

std::array<double, 3> PolarOf(const float* rectangular)
{
    const double a = rectangular[1];
    const double b = rectangular[2];
    const double chroma = std::sqrt(a * a + b * b);
    double hue = 360.0;
    if (std::fabs(a) >= neutralLimit || std::fabs(b) >= neutralLimit) {
        hue = std::atan2(b, a) * degreesPerRadian;
        if (hue <= 0.0) {
            hue += 360.0;
        }
    }
    return {rectangular[0], chroma, hue};
}

void ConvertXYZToLab(const HvColorVector& xyz, HvColorVector& lab)
{
    const std::array<double, 3> values = LabOf(&xyz[0], WhiteOf(xyz.GetConditions()));
    Write(lab, xyz, values[0], values[1], values[2]);
}

void ConvertLabToXYZ(const HvColorVector& lab, HvColorVector& xyz)
{
    const WhitePoint white = WhiteOf(lab.GetConditions());
    const double fy = (static_cast<double>(lab[0]) + 16.0) / 116.0;
    const double fx = lab[1] / 500.0 + fy;
    const double fz = fy - lab[2] / 200.0;
    const std::array<double, 3> f = {fx, fy, fz};
    std::array<double, 3> value;
    for (std::size_t axis = 0; axis < f.size(); ++axis) {
        value[axis] = InverseLabFunction(f[axis], white[axis] * 100.0 / white[1]);
    }
    Write(xyz, lab, value[0], value[1], value[2]);
}

// CIE 1976 lightness, chroma and hue angle: CIE 15:2004.
void ConvertRectangularToPolar(const HvColorVector& rectangular, HvColorVector& polar)
{
    const std::array<double, 3> values = PolarOf(&rectangular[0]);
    Write(polar, rectangular, values[0], values[1], values[2]);
}

void ConvertPolarToRectangular(const HvColorVector& polar, HvColorVector& rectangular)
{
    const double chroma = polar[1];
    const double hue = polar[2] * M_PI / 180.0;
    Write(rectangular, polar, polar[0], chroma * std::cos(hue), chroma * std::sin(hue));
}

// Chromaticity coordinates: CIE 15:2004.
bool ConvertXYZToxyY(const HvColorVector& xyz, HvColorVector& xyY)
{
    std::array<double, 3> tristimulus = {xyz[0], xyz[1], xyz[2]};
    double sum = tristimulus[0] + tristimulus[1] + tristimulus[2];
    const double luminance = tristimulus[1];
    if (sum == 0.0) {
        HvColorVector white;
        if (!GetXYZOfBlackStandIn(xyz.GetConditions(), white)) {
            return false;
        }
        tristimulus = {white[0], white[1], white[2]};
        sum = tristimulus[0] + tristimulus[1] + tristimulus[2];
    }
    Write(xyY, xyz, tristimulus[0] / sum, tristimulus[1] / sum, luminance);
    return true;
}

bool ConvertTouvY1976(const HvColorVector& vector, HvColorVector& uvY)
{
    std::array<double, 3> values;
    if (!UVY1976(vector, values)) {
        return false;
    }
    Write(uvY, vector, values[0], values[1], values[2]);
    SetColorSpace(uvY, ColorSpaceKeyword::cieuvY1976);
    return true;
}

// CIE 1960 UCS, v = 2/3 v′: MacAdam 1937; CIE 15:2004.
bool ConvertTouvY1960(const HvColorVector& vector, HvColorVector& uvY)
{
    if (!ConvertTouvY1976(vector, uvY)) {
        return false;
    }
    uvY[1] = static_cast<float>(2.0 * uvY[1] / 3.0);
    SetColorSpace(uvY, ColorSpaceKeyword::cieuvY1960);
    return true;
}

bool GetXYZOfBlackStandIn(const HvMeasureConditions& conditions, HvColorVector& xyz)
{
    std::array<float, HvSpectrum::numberOfValues> level;
    level.fill(blackStandIn);
    return GetXYZ(HvSpectrum(level.data(), conditions), conditions, xyz);
}

HvMeasureConditions WithColorSpace(const HvMeasureConditions& conditions, const char* colorSpace)
{
    HvMeasureConditions typed(conditions);
    typed.SetCondition(String(ConditionKey::colorSpace), String(colorSpace));
    return typed;
}

}
