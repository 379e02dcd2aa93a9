#include "cmetry/ColorDifference.h"

#include <array>
#include <cmath>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/Ciede2000.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/SpectrumToColorSpace.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Tristimulus.h"
#include "utilities/Exception.h"

namespace CMetry {

using Utilities::String;

namespace {

// What the inner ways give when they can't compute; the front turns exactly this into a failure.
constexpr float notComputable = 1e6f;
constexpr double degreesToRadians = M_PI / 180.0;

// Formulas of "ColorSpaceDescription.DeltaEFormula" beside the colour-space keywords they share.
constexpr char fmcII[] = "FMCII";
constexpr char cmc[] = "CMC";
constexpr char cie1994[] = "94";
constexpr char ciede2000[] = "CIEDE2000";

using SpectrumWay = bool (*)(const HvSpectrum&, const HvMeasureConditions&, HvColorVector&);

struct Parameters {
    float p1;
    float p2;
    float p3;
};

// Lightness, chroma and hue differences of two rectangular vectors, the hue difference from what
// the other two leave of the whole distance.
struct LChDifference {
    double lightness;
    double chroma;
    double hue;
};

double Chroma(const HvColorVector& vector)
{
    const double a = vector[1];
    const double b = vector[2];
    return std::sqrt(a * a + b * b);
}

LChDifference DifferenceOf(const HvColorVector& standard, const HvColorVector& sample)
{
    HvColorVector difference(standard);
    difference.Subtract(sample);
    const double lightness = difference[0];
    const double chroma = Chroma(standard) - Chroma(sample);
    const double length = difference.GetLength();
    return {lightness, chroma, std::sqrt(std::fabs(length * length - lightness * lightness - chroma * chroma))};
}

// CIE 1976 ΔE*ab and ΔE*uv: CIE 15:2004, Colorimetry, 3rd edition.
float EuclideanDifference(
    const HvSpectrum& spectrum1, const HvSpectrum& spectrum2, const HvMeasureConditions& conditions, SpectrumWay way)
{
    HvColorVector vector1;
    HvColorVector vector2;
    if (!way(spectrum1, conditions, vector1) || !way(spectrum2, conditions, vector2)) {
        return notComputable;
    }
    vector1.Subtract(vector2);
    return static_cast<float>(vector1.GetLength());
}

double Polynomial(double y, double c0, double c1, double c2, double c3, double c4)
{
    return c0 + c1 * y + c2 * y * y + c3 * y * y * y + c4 * y * y * y * y;
}

struct PQS {
    double p;
    double q;
    double s;
};

// FMC-II: Chickering, J. Opt. Soc. Am. 61 (1971).
// Some constants of FMC-II and CMC are float literals widened to double, 0.55669f being
// 0.556689977645874: the module has always computed with these, and the decimals they round
// would move its values in the last digits.
PQS ToPQS(const HvColorVector& xyz)
{
    const double x = xyz[0];
    const double y = xyz[1];
    const double z = xyz[2];
    return {0.724 * x + 0.382 * y - 0.098 * z, -0.48 * x + 1.37 * y + 0.1276 * z, 0.686 * z};
}

float FMCIIDifference(const HvColorVector& xyz1, const HvColorVector& xyz2)
{
    const double y1 = xyz1[1];
    const double z1 = xyz1[2];
    const PQS standard = ToPQS(xyz1);
    const PQS sample = ToPQS(xyz2);
    const double r = standard.p * standard.p + standard.q * standard.q;
    if (!(r > 0.0) || (!(y1 > 0.0) && !(z1 > 0.0))) {
        return notComputable;
    }
    const double k1 = Polynomial(y1, static_cast<double>(0.55669f), 0.049434, -0.00082575, 7.9172e-6, -3.0087e-8);
    const double k2 = Polynomial(y1, 0.17548, 0.027556, -0.00057262, 6.3893e-6, -2.6731e-8);
    const double deltaP = sample.p - standard.p;
    const double deltaQ = sample.q - standard.q;
    const double deltaS = sample.s - standard.s;
    const double p2 = standard.p * standard.p;
    const double q2 = standard.q * standard.q;
    const double a2 = 1.73e-5 * r / (1.0 + 2.73 * p2 * q2 / (p2 * p2 + q2 * q2));
    const double b2 = 0.0003098 * (standard.s * standard.s + 0.2015 * y1 * y1);
    const double a = standard.q * deltaP - standard.p * deltaQ;
    const double b = standard.p * deltaP + standard.q * deltaQ;
    const double t = standard.s * b / r - deltaS;
    const double deltaC2 = k1 * k1 * (a * a / (a2 * r) + t * t / b2);
    const double deltaL2 = k2 * k2 * static_cast<double>(0.077841f) * b * b / (a2 * r);
    return static_cast<float>(std::sqrt(deltaC2 + deltaL2));
}

float FMCIIDifference(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2, const HvMeasureConditions& conditions)
{
    HvColorVector xyz1;
    HvColorVector xyz2;
    if (!GetXYZ(spectrum1, conditions, xyz1) || !GetXYZ(spectrum2, conditions, xyz2)) {
        return notComputable;
    }
    return FMCIIDifference(xyz1, xyz2);
}

// CMC(l:c): Clarke, McDonald and Rigg, J. Soc. Dyers Col. 100 (1984); BS 6923:1988.
double CMCHueWeight(double hue)
{
    if (hue >= 164.0 && hue <= 345.0) {
        return 0.56 + std::fabs(static_cast<double>(0.2f) * std::cos((hue + 168.0) * degreesToRadians));
    }
    return 0.36 + std::fabs(static_cast<double>(0.4f) * std::cos((hue + 35.0) * degreesToRadians));
}

float CMCDifference(const HvColorVector& lab1, const HvColorVector& lab2, double l, double c)
{
    HvColorVector lch1;
    ConvertRectangularToPolar(lab1, lch1);
    const double lightness = lch1[0];
    const double chroma = lch1[1];
    const double sl = lightness <= 16.0 ? 0.511 : 0.040975f * lightness / (1.0 + 0.01765f * lightness);
    const double sc = 0.0638f * chroma / (1.0 + 0.0131f * chroma) + 0.638f;
    const double chroma4 = chroma * chroma * chroma * chroma;
    const double f = std::sqrt(chroma4 / (chroma4 + 1900.0));
    const double sh = sc * (f * CMCHueWeight(lch1[2]) + 1.0 - f);
    const LChDifference delta = DifferenceOf(lab1, lab2);
    const double termL = delta.lightness / (l * sl);
    const double termC = delta.chroma / (c * sc);
    const double termH = delta.hue / sh;
    return static_cast<float>(std::sqrt(termL * termL + termC * termC + termH * termH));
}

// CIE 1994 ΔE*94: CIE 116-1995, Industrial colour-difference evaluation.
float CIE1994Difference(const HvColorVector& lab1, const HvColorVector& lab2, const Parameters& k)
{
    if (k.p1 == 0.0f || k.p2 == 0.0f || k.p3 == 0.0f) {
        return notComputable;
    }
    const double chroma = Chroma(lab1);
    const double sc = 1.0 + 0.045 * chroma;
    const double sh = 1.0 + 0.015 * chroma;
    const LChDifference delta = DifferenceOf(lab1, lab2);
    return static_cast<float>(std::sqrt(std::pow(delta.lightness / k.p1, 2.0) +
        std::pow(delta.chroma / (k.p2 * sc), 2.0) + std::pow(delta.hue / (k.p3 * sh), 2.0)));
}

float CIEDE2000Difference(const HvColorVector& lab1, const HvColorVector& lab2, const Parameters& k)
{
    if (k.p1 == 0.0f || k.p2 == 0.0f || k.p3 == 0.0f) {
        return notComputable;
    }
    return static_cast<float>(
        Ciede2000::Difference({lab1[0], lab1[1], lab1[2]}, {lab2[0], lab2[1], lab2[2]}, {k.p1, k.p2, k.p3}));
}

float DifferenceOfLabs(
    const HvColorVector& lab1, const HvColorVector& lab2, const String& formula, const Parameters& parameters)
{
    if (ColorSpaceKeyword::Is(formula, ciede2000)) {
        return CIEDE2000Difference(lab1, lab2, parameters);
    }
    if (ColorSpaceKeyword::Is(formula, cmc)) {
        return CMCDifference(lab1, lab2, parameters.p1, parameters.p2);
    }
    if (ColorSpaceKeyword::Is(formula, cie1994)) {
        return CIE1994Difference(lab1, lab2, parameters);
    }
    if (!ColorSpaceKeyword::Is(formula, ColorSpaceKeyword::cieLab)) {
        throw ExceptionCMetry(TranslatedMessage("GetDeltaE not supported for DeltaEFormula ") + formula);
    }
    HvColorVector difference(lab1);
    difference.Subtract(lab2);
    return static_cast<float>(difference.GetLength());
}

bool LabsOf(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2, const HvMeasureConditions& conditions,
    HvColorVector& lab1, HvColorVector& lab2)
{
    return GetLab(spectrum1, conditions, lab1) && GetLab(spectrum2, conditions, lab2);
}

float DifferenceOfSpectra(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
    const HvMeasureConditions& conditions, const Parameters& parameters)
{
    const String& formula = conditions.GetDeltaEFormula();
    if (ColorSpaceKeyword::Is(formula, ColorSpaceKeyword::cieLab)) {
        return EuclideanDifference(spectrum1, spectrum2, conditions, GetLab);
    }
    if (ColorSpaceKeyword::Is(formula, ColorSpaceKeyword::labMg)) {
        return EuclideanDifference(spectrum1, spectrum2, conditions, GetLABmg);
    }
    if (ColorSpaceKeyword::Is(formula, ColorSpaceKeyword::cieLuv)) {
        return EuclideanDifference(spectrum1, spectrum2, conditions, GetLuv);
    }
    if (ColorSpaceKeyword::Is(formula, fmcII)) {
        return FMCIIDifference(spectrum1, spectrum2, conditions);
    }
    if (!ColorSpaceKeyword::Is(formula, cmc) && !ColorSpaceKeyword::Is(formula, ciede2000) &&
        !ColorSpaceKeyword::Is(formula, cie1994)) {
        throw ExceptionCMetry(TranslatedMessage("GetDeltaE not supported for DeltaEFormula ") + formula);
    }
    HvColorVector lab1;
    HvColorVector lab2;
    if (!LabsOf(spectrum1, spectrum2, conditions, lab1, lab2)) {
        return notComputable;
    }
    return DifferenceOfLabs(lab1, lab2, formula, parameters);
}

// CMC is left out: on vectors it has always failed.
float DifferenceOfVectors(const HvColorVector& vector1, const HvColorVector& vector2, const Parameters& parameters)
{
    const String& formula = vector1.GetConditions().GetDeltaEFormula();
    if (!ColorSpaceKeyword::Is(formula, ColorSpaceKeyword::cieLab) && !ColorSpaceKeyword::Is(formula, ciede2000) &&
        !ColorSpaceKeyword::Is(formula, cie1994)) {
        return notComputable;
    }
    const String cieLab(ColorSpaceKeyword::cieLab);
    return DifferenceOfLabs(
        CMetryCalculator::Convert(vector1, cieLab), CMetryCalculator::Convert(vector2, cieLab), formula, parameters);
}

// Metamerism index under a change of illuminant, CIE 15:2004, with the multiplicative
// correction of Fairman, Color Res. Appl. 12 (1987).
float MetamerismIndex(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2, const HvMeasureConditions& conditions,
    const IlluminationTYPE& illumination)
{
    HvMeasureConditions testConditions(conditions);
    testConditions.SetIllumination(illumination);
    HvColorVector reference1;
    HvColorVector reference2;
    HvColorVector test1;
    HvColorVector test2;
    if (!GetXYZ(spectrum1, conditions, reference1) || !GetXYZ(spectrum2, conditions, reference2) ||
        !GetXYZ(spectrum1, testConditions, test1) || !GetXYZ(spectrum2, testConditions, test2)) {
        return notComputable;
    }
    for (uint16_t axis = 0; axis < 3; ++axis) {
        const double ratio = reference2[axis] == 0.0f ? 1.0 : static_cast<double>(reference1[axis]) / reference2[axis];
        test2[axis] = static_cast<float>(test2[axis] * ratio);
    }
    ConvertXYZToLab(test1, test1);
    ConvertXYZToLab(test2, test2);
    test1.Subtract(test2);
    return static_cast<float>(test1.GetLength());
}

float Checked(float difference)
{
    if (difference == notComputable) {
        throw ExceptionCMetry(TranslatedMessage("CMetryCalculator"));
    }
    return difference;
}

}

float ColorDifference::GetDeltaE(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
    const HvMeasureConditions& conditions, float p1, float p2, float p3)
{
    return Checked(DifferenceOfSpectra(spectrum1, spectrum2, conditions, {p1, p2, p3}));
}

float ColorDifference::GetDeltaE(
    const HvColorVector& vector1, const HvColorVector& vector2, float p1, float p2, float p3)
{
    return Checked(DifferenceOfVectors(vector1, vector2, {p1, p2, p3}));
}

float ColorDifference::GetLabDeltaE(
    const HvColorVector& lab1, const HvColorVector& lab2, const String& formula, float p1, float p2, float p3)
{
    return Checked(DifferenceOfLabs(lab1, lab2, formula, {p1, p2, p3}));
}

// A failure of any kind on the way, an illuminant without a table included, is a metamerism index
// that can't be computed.
float ColorDifference::GetMetamerismIndex(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
    const HvMeasureConditions& conditions, const IlluminationTYPE& illumination)
{
    float index = notComputable;
    try {
        index = MetamerismIndex(spectrum1, spectrum2, conditions, illumination);
    } catch (const Utilities::Exception&) {
        index = notComputable;
    }
    return Checked(index);
}

}
