#include "cmetry/CMetryCalculator.h"

#include <cmath>

#include "cmetry/ColorDifference.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ColorTemperatureFinder.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/RGBConversion.h"
#include "cmetry/SpectrumFit.h"
#include "cmetry/SpectrumToColorSpace.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Tristimulus.h"

namespace CMetry {

using Utilities::String;
namespace Keyword = ColorSpaceKeyword;

namespace {

using SpectrumWay = bool (*)(const HvSpectrum&, const HvMeasureConditions&, HvColorVector&);

struct ColorSpaceWay {
    const char* colorSpace;
    SpectrumWay way;
};

bool GetuvY1976(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    return GetXYZ(spectrum, WithColorSpace(conditions, Keyword::cieXYZ), out) && ConvertTouvY1976(out, out);
}

bool GetuvY1960(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    return GetXYZ(spectrum, WithColorSpace(conditions, Keyword::cieXYZ), out) && ConvertTouvY1960(out, out);
}

bool GetScreenRGB(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    HvColorVector lab;
    return GetLab(spectrum, conditions, lab) && GetRGB(lab, out);
}

// In the order the colour space is looked for.
constexpr ColorSpaceWay spectrumWays[] = {
    {Keyword::cieLab, GetLab},
    {Keyword::cieLCh, GetLCh},
    {Keyword::cieXYZ, GetXYZ},
    {Keyword::ciexyY, GetxyY},
    {Keyword::cieLChuv, GetLChuv},
    {Keyword::labMg, GetLABmg},
    {Keyword::lchMg, GetLCHmg},
    {Keyword::cieLuv, GetLuv},
    {Keyword::cieuvY1976, GetuvY1976},
    {Keyword::cieuvY1960, GetuvY1960},
    {Keyword::hunterLab, GetHunterLab},
    {Keyword::rxRyRz, GetRxRyRz},
    {Keyword::rgb, GetScreenRGB},
};

SpectrumWay WayTo(const String& colorSpace)
{
    for (const ColorSpaceWay& entry : spectrumWays) {
        if (Keyword::Is(colorSpace, entry.colorSpace)) {
            return entry.way;
        }
    }
    throw ExceptionCMetry(TranslatedMessage("GetVector not supported for ColorSpace ") + colorSpace);
}

[[noreturn]] void ThrowCalculationFailed()
{
    throw ExceptionCMetry(TranslatedMessage("CMetryCalculator"));
}

[[noreturn]] void ThrowConversionNotSupported(const String& source, const String& target)
{
    throw ExceptionCMetry(TranslatedMessage("Conversion not supported from ColorSpace ") + source +
        TranslatedMessage(" to ColorSpace ") + target);
}

bool IsPolarPair(const String& source, const String& target)
{
    return (Keyword::Is(source, Keyword::cieLab) && Keyword::Is(target, Keyword::cieLCh)) ||
        (Keyword::Is(source, Keyword::labMg) && Keyword::Is(target, Keyword::lchMg)) ||
        (Keyword::Is(source, Keyword::cieLuv) && Keyword::Is(target, Keyword::cieLChuv));
}

bool IsChromaticitySource(const String& source)
{
    return Keyword::Is(source, Keyword::cieXYZ) || Keyword::Is(source, Keyword::ciexyY);
}

// The way of a pair other than to RGB, written to result; false when the way fails.
bool ConvertBetween(const HvColorVector& vector, const String& source, const String& target, HvColorVector& result)
{
    if (Keyword::Is(source, Keyword::cieXYZ) && Keyword::Is(target, Keyword::cieLab)) {
        ConvertXYZToLab(vector, result);
        return true;
    }
    if (Keyword::Is(source, Keyword::cieLab) && Keyword::Is(target, Keyword::cieXYZ)) {
        ConvertLabToXYZ(vector, result);
        return true;
    }
    if (IsPolarPair(source, target)) {
        ConvertRectangularToPolar(vector, result);
        return true;
    }
    if (Keyword::Is(source, Keyword::cieXYZ) && Keyword::Is(target, Keyword::ciexyY)) {
        return ConvertXYZToxyY(vector, result);
    }
    if (IsChromaticitySource(source) && Keyword::Is(target, Keyword::cieuvY1960)) {
        return ConvertTouvY1960(vector, result);
    }
    if (IsChromaticitySource(source) && Keyword::Is(target, Keyword::cieuvY1976)) {
        return ConvertTouvY1976(vector, result);
    }
    ThrowConversionNotSupported(source, target);
}

HvColorVector ConvertToRGB(const HvColorVector& vector)
{
    const bool fromLab = Keyword::Is(vector.GetConditions().GetColorSpace(), Keyword::cieLab);
    const HvColorVector lab = fromLab ? vector : CMetryCalculator::Convert(vector, String(Keyword::cieLab));
    HvColorVector rgb;
    if (!GetRGB(lab, rgb)) {
        ThrowCalculationFailed();
    }
    return rgb;
}

double VectorChroma(const HvColorVector& vector)
{
    const double a = vector[1];
    const double b = vector[2];
    return std::sqrt(a * a + b * b);
}

const char* DeltaColorSpace(const String& colorSpace)
{
    if (Keyword::Is(colorSpace, Keyword::cieLab)) {
        return Keyword::cieLCh;
    }
    if (Keyword::Is(colorSpace, Keyword::cieLuv)) {
        return Keyword::cieLChuv;
    }
    if (Keyword::Is(colorSpace, Keyword::labMg)) {
        return Keyword::lchMg;
    }
    ThrowCalculationFailed();
}

}

HvColorVector CMetryCalculator::GetVector(const HvSpectrum& spectrum, const HvMeasureConditions& conditions)
{
    const SpectrumWay way = WayTo(conditions.GetColorSpace());
    // Starts with the conditions asked for, so that a way which keeps them shares them as they are.
    HvColorVector result(0.0f, 0.0f, 0.0f, conditions);
    if (!way(spectrum, conditions, result)) {
        ThrowCalculationFailed();
    }
    return result;
}

HvColorVector CMetryCalculator::Convert(const HvColorVector& vector, const String& targetColorSpace)
{
    const String& source = vector.GetConditions().GetColorSpace();
    if (source == targetColorSpace) {
        return vector;
    }
    if (Keyword::Is(targetColorSpace, Keyword::rgb)) {
        return ConvertToRGB(vector);
    }
    HvColorVector converted(vector);
    if (!ConvertBetween(vector, source, targetColorSpace, converted)) {
        ThrowCalculationFailed();
    }
    return HvColorVector(
        converted[0], converted[1], converted[2], WithColorSpace(vector.GetConditions(), targetColorSpace.CString()));
}

HvColorVector CMetryCalculator::GetDeltaVector(const HvColorVector& vector1, const HvColorVector& vector2)
{
    const char* deltaColorSpace = DeltaColorSpace(vector1.GetConditions().GetColorSpace());
    HvColorVector difference(vector1);
    difference.Subtract(vector2);
    const double deltaL = difference[0];
    const double deltaC = VectorChroma(vector1) - VectorChroma(vector2);
    const double length = difference.GetLength();
    double deltaH = std::sqrt(std::fabs(length * length - deltaL * deltaL - deltaC * deltaC));
    const double orientation =
        static_cast<double>(vector1[1]) * vector2[2] - static_cast<double>(vector2[1]) * vector1[2];
    if (orientation > 0.0) {
        deltaH = -deltaH;
    }
    return HvColorVector(static_cast<float>(deltaL), static_cast<float>(deltaC), static_cast<float>(deltaH),
        WithColorSpace(vector1.GetConditions(), deltaColorSpace));
}

float CMetryCalculator::GetDeltaE(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
    const HvMeasureConditions& conditions, float p1, float p2, float p3)
{
    return ColorDifference::GetDeltaE(spectrum1, spectrum2, conditions, p1, p2, p3);
}

float CMetryCalculator::GetDeltaE(
    const HvColorVector& vector1, const HvColorVector& vector2, float p1, float p2, float p3)
{
    return ColorDifference::GetDeltaE(vector1, vector2, p1, p2, p3);
}

float CMetryCalculator::GetMetamerismIndex(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
    const HvMeasureConditions& conditions, const IlluminationTYPE& illumination)
{
    return ColorDifference::GetMetamerismIndex(spectrum1, spectrum2, conditions, illumination);
}

float CMetryCalculator::GetColorTemperature(const HvSpectrum& spectrum)
{
    return ColorTemperatureFinder().GetColorTemperature(spectrum);
}

HvSpectrum CMetryCalculator::GetSpectrum(const HvColorVector& vector)
{
    return SpectrumFit::GetSpectrum(vector);
}

}
