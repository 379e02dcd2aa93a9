#include "cmetry/CMetryCalculator.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::CMetryCalculator;
using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using Utilities::String;

namespace {

HvMeasureConditions Conditions(
    const char* colorSpace, const char* illumination = "D65", const char* observer = "TwoDegree")
{
    HvMeasureConditions conditions;
    conditions.SetCondition("ColorSpaceDescription.Type", colorSpace);
    conditions.SetCondition("Colorimetric.Illumination", illumination);
    conditions.SetCondition("Colorimetric.Observer", observer);
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    return conditions;
}

HvColorVector Vector(float first, float second, float third, const char* colorSpace)
{
    return HvColorVector(first, second, third, Conditions(colorSpace));
}

// Lab from X, Y, Z and those of the white by the textbook formula, in double precision.
std::array<double, 3> LabOf(const HvColorVector& xyz, const HvColorVector& white)
{
    const auto f = [&](int axis) {
        const double t = static_cast<double>(xyz[axis]) / white[axis];
        return t > std::pow(6.0 / 29.0, 3.0) ? std::cbrt(t) : t / (3.0 * std::pow(6.0 / 29.0, 2.0)) + 4.0 / 29.0;
    };
    return {116.0 * f(1) - 16.0, 500.0 * (f(0) - f(1)), 200.0 * (f(1) - f(2))};
}

void ExpectVector(
    const HvColorVector& vector, double first, double second, double third, double tolerance, const std::string& what)
{
    EXPECT_NEAR(vector[0], first, tolerance) << what;
    EXPECT_NEAR(vector[1], second, tolerance) << what;
    EXPECT_NEAR(vector[2], third, tolerance) << what;
}

}

TEST(CMetryCalculator, WhiteAndFlatGreyAreNeutralUnderEveryIlluminant)
{
    for (const char* illumination : {"D65", "D50", "A", "C", "F7", "F3", "Dxx, Temperature:6000"}) {
        for (const char* observer : {"TwoDegree", "TenDegree"}) {
            const std::string what = std::string(illumination) + " " + observer;
            ExpectVector(CMetryCalculator::GetVector(Flat(1.0f), Conditions("CIELab", illumination, observer)), 100.0,
                0.0, 0.0, 1e-3, what);
            ExpectVector(CMetryCalculator::GetVector(Flat(0.5f), Conditions("CIELab", illumination, observer)), 76.07,
                0.0, 0.0, 5e-3, what);
            EXPECT_NEAR(
                CMetryCalculator::GetVector(Flat(1.0f), Conditions("CIELCh", illumination, observer))[1], 0.0, 5e-4)
                << what;
        }
    }
    const HvColorVector result = CMetryCalculator::GetVector(Flat(0.5f), Conditions("CIELab"));
    EXPECT_EQ(String("CIELab"), result.GetConditions().GetColorSpace());
    EXPECT_EQ(0.0f, result[3]);
}

// The X, Y, Z themselves are checked against an integration at 1 nm in the tests of the weights.
TEST(CMetryCalculator, LabFollowsTheTextbookFormulaFromXYZ)
{
    const HvSpectrum samples[] = {
        SpectrumOf(tcs01), SpectrumOf(tcs05), SpectrumOf(tcs09), SpectrumOf(tcs12), Flat(0.005f)};
    for (const char* illumination : {"D65", "A"}) {
        for (const char* observer : {"TwoDegree", "TenDegree"}) {
            const auto vectorOf = [&](const HvSpectrum& sample, const char* colorSpace) {
                return CMetryCalculator::GetVector(sample, Conditions(colorSpace, illumination, observer));
            };
            for (const HvSpectrum& sample : samples) {
                const auto expected = LabOf(vectorOf(sample, "CIEXYZ"), vectorOf(Flat(1.0f), "CIEXYZ"));
                ExpectVector(vectorOf(sample, "CIELab"), expected[0], expected[1], expected[2], 1e-3,
                    std::string(illumination) + " " + observer + " " + std::to_string(sample[17]));
            }
        }
    }
}

TEST(CMetryCalculator, BlackHasTheChromaticityOfTheWhite)
{
    const HvColorVector white = CMetryCalculator::GetVector(Flat(1.0f), Conditions("CIEXYZ", "A"));
    const double sum = static_cast<double>(white[0]) + white[1] + white[2];
    EXPECT_EQ(0.0f, CMetryCalculator::GetVector(Flat(0.0f), Conditions("CIELab", "A"))[0]);
    const HvColorVector black = CMetryCalculator::GetVector(Flat(0.0f), Conditions("CIExyY", "A"));
    ExpectVector(black, white[0] / sum, white[1] / sum, 0.0, 1e-5, "xyY of black");
    const HvColorVector luv = CMetryCalculator::GetVector(Flat(0.0f), Conditions("CIELuv", "A"));
    const double denominator = white[0] + 15.0 * white[1] + 3.0 * white[2];
    // Black takes the lightness of the faint stand-in spectrum too.
    ExpectVector(luv, 116.0 * (7.787 * 1e-5 + 0.13793103) - 16.0, 4.0 * white[0] / denominator,
        9.0 * white[1] / denominator, 1e-4, "Luv of black");
}

TEST(CMetryCalculator, ChromaticityAndTristimulusFilterValues)
{
    ExpectVector(CMetryCalculator::GetVector(Flat(1.0f), Conditions("CIExyY")), 0.3127, 0.3290, 100.0, 2e-4, "xyY");
    const HvColorVector uv1976 = CMetryCalculator::GetVector(Flat(0.2f), Conditions("CIEuvY1976"));
    ExpectVector(uv1976, 0.1978, 0.4683, 20.0, 2e-4, "uvY 1976");
    EXPECT_EQ(String("CIEuvY1976"), uv1976.GetConditions().GetColorSpace());
    const HvColorVector uv1960 = CMetryCalculator::GetVector(Flat(0.2f), Conditions("CIEuvY1960"));
    ExpectVector(uv1960, 0.1978, 0.3122, 20.0, 2e-4, "uvY 1960");
    EXPECT_EQ(String("CIEuvY1960"), uv1960.GetConditions().GetColorSpace());
    ExpectVector(CMetryCalculator::GetVector(Flat(1.0f), Conditions("RxRyRz", "C")), 100.0, 100.0, 100.0, 1e-3,
        "RxRyRz of white");
    ExpectVector(
        CMetryCalculator::GetVector(Flat(1.0f), Conditions("HunterLab")), 100.0, 0.0, 0.0, 1e-3, "Hunter Lab of white");
    const HvColorVector hunterBlack = CMetryCalculator::GetVector(Flat(0.0f), Conditions("HunterLab"));
    ExpectVector(hunterBlack, 0.001, 0.0, 0.0, 1e-6, "Hunter Lab of black");
    const HvColorVector hunter = CMetryCalculator::GetVector(SpectrumOf(tcs09), Conditions("HunterLab"));
    const HvColorVector xyz = CMetryCalculator::GetVector(SpectrumOf(tcs09), Conditions("CIEXYZ"));
    EXPECT_NEAR(hunter[0], 10.0 * std::sqrt(xyz[1]), 1e-4);
    EXPECT_NEAR(hunter[1], (100.0 / 95.047 * xyz[0] - xyz[1]) * 17.5 / std::sqrt(xyz[1]), 0.02);
    EXPECT_NEAR(hunter[2], (xyz[1] - 100.0 / 108.883 * xyz[2]) * 7.0 / std::sqrt(xyz[1]), 0.02);
}

TEST(CMetryCalculator, MgSpacesBendLightnessChromaAndHue)
{
    const HvSpectrum red(tcs09.data());
    const HvColorVector lch = CMetryCalculator::GetVector(red, Conditions("CIELCh"));
    const HvColorVector lchMg = CMetryCalculator::GetVector(red, Conditions("LCHmg"));
    const HvColorVector labMg = CMetryCalculator::GetVector(red, Conditions("LABmg"));
    EXPECT_EQ(lchMg[0], labMg[0]);
    EXPECT_NEAR(lchMg[0], 0.01765 * lch[0] + std::log(0.040975 * lch[0]) / 0.040975 + 34.7231, 1e-3);
    EXPECT_NEAR(lchMg[1], 0.181547 * lch[1] + 12.253 * std::log(0.072158 * lch[1] + 0.638) + 5.50671, 1e-3);
    EXPECT_NEAR(labMg[1], lchMg[1] * std::cos(lchMg[2] * M_PI / 180.0), 1e-3);
    EXPECT_NEAR(labMg[2], lchMg[1] * std::sin(lchMg[2] * M_PI / 180.0), 1e-3);
    // Below L* 16 the lightness is a plain quotient, so the curve steps down at 16.
    const HvColorVector dark = CMetryCalculator::GetVector(Flat(0.01f), Conditions("CIELCh"));
    ASSERT_LT(dark[0], 16.0f);
    EXPECT_NEAR(CMetryCalculator::GetVector(Flat(0.01f), Conditions("LCHmg"))[0], dark[0] / 0.511, 1e-4);
    const HvColorVector mid = CMetryCalculator::GetVector(red, Conditions("CIELuv"));
    const HvColorVector midPolar = CMetryCalculator::GetVector(red, Conditions("CIELChuv"));
    EXPECT_EQ(mid[0], midPolar[0]);
    EXPECT_NEAR(midPolar[1], std::hypot(mid[1], mid[2]), 1e-6);
}

TEST(CMetryCalculator, GetVectorFailures)
{
    EXPECT_EQ("GetVector not supported for ColorSpace CMYK",
        CMetryFailure([] { CMetryCalculator::GetVector(Flat(0.5f), Conditions("CMYK")); }));
    EXPECT_EQ("GetVector not supported for ColorSpace Undefined",
        CMetryFailure([] { CMetryCalculator::GetVector(Flat(0.5f), Conditions("Undefined")); }));
}

TEST(CMetryCalculator, ConvertFollowsTheWaysForward)
{
    const HvColorVector xyz = CMetryCalculator::GetVector(SpectrumOf(tcs12), Conditions("CIEXYZ", "D50"));
    const HvColorVector lab = CMetryCalculator::GetVector(SpectrumOf(tcs12), Conditions("CIELab", "D50"));
    const HvColorVector converted = CMetryCalculator::Convert(xyz, "CIELab");
    ExpectVector(converted, lab[0], lab[1], lab[2], 1e-4, "XYZ to Lab");
    EXPECT_EQ(String("CIELab"), converted.GetConditions().GetColorSpace());
    EXPECT_EQ(converted.GetConditions().GetIllumination(), xyz.GetConditions().GetIllumination());
    ExpectVector(CMetryCalculator::Convert(lab, "CIEXYZ"), xyz[0], xyz[1], xyz[2], 1e-4, "Lab to XYZ");
    const HvColorVector lch = CMetryCalculator::GetVector(SpectrumOf(tcs12), Conditions("CIELCh", "D50"));
    ExpectVector(CMetryCalculator::Convert(lab, "CIELCh"), lch[0], lch[1], lch[2], 1e-4, "Lab to LCh");
    const HvColorVector xyY = CMetryCalculator::Convert(xyz, "CIExyY");
    const HvColorVector viaxyY = CMetryCalculator::Convert(xyY, "CIEuvY1976");
    ExpectVector(viaxyY, CMetryCalculator::Convert(xyz, "CIEuvY1976")[0],
        CMetryCalculator::Convert(xyz, "CIEuvY1976")[1], xyz[1], 1e-5, "uvY from xyY and from XYZ");
    ExpectVector(
        CMetryCalculator::Convert(xyY, "CIEuvY1960"), viaxyY[0], viaxyY[1] * 2.0 / 3.0, xyz[1], 1e-5, "uvY 1960");
    HvColorVector withFourth = xyz;
    withFourth[3] = 7.0f;
    EXPECT_EQ(0.0f, CMetryCalculator::Convert(withFourth, "CIELab")[3]);
    EXPECT_EQ(withFourth, CMetryCalculator::Convert(withFourth, "CIEXYZ"));
}

TEST(CMetryCalculator, LabAndXYZRoundTripAcrossTheLinearPart)
{
    for (float lightness : {0.5f, 5.0f, 7.9f, 8.1f, 30.0f, 95.0f}) {
        const HvColorVector lab = Vector(lightness, 12.0f, -6.0f, "CIELab");
        const HvColorVector back = CMetryCalculator::Convert(CMetryCalculator::Convert(lab, "CIEXYZ"), "CIELab");
        ExpectVector(back, lab[0], lab[1], lab[2], 2e-3, "round trip at L* " + std::to_string(lightness));
    }
}

TEST(CMetryCalculator, HueLiesAboveZeroUpTo360)
{
    EXPECT_FLOAT_EQ(360.0f, CMetryCalculator::Convert(Vector(50.0f, 10.0f, 0.0f, "CIELab"), "CIELCh")[2]);
    EXPECT_FLOAT_EQ(180.0f, CMetryCalculator::Convert(Vector(50.0f, -10.0f, 0.0f, "CIELab"), "CIELCh")[2]);
    EXPECT_FLOAT_EQ(270.0f, CMetryCalculator::Convert(Vector(50.0f, 0.0f, -10.0f, "CIELab"), "CIELCh")[2]);
    EXPECT_FLOAT_EQ(360.0f, CMetryCalculator::Convert(Vector(50.0f, 0.0f, 9e-6f, "CIELab"), "CIELCh")[2]);
    const HvColorVector polar = CMetryCalculator::Convert(Vector(50.0f, 3.0f, 4.0f, "LABmg"), "LCHmg");
    ExpectVector(polar, 50.0, 5.0, std::atan2(4.0, 3.0) * 180.0 / M_PI, 1e-4, "LABmg to LCHmg");
    EXPECT_EQ(String("LCHmg"), polar.GetConditions().GetColorSpace());
    EXPECT_EQ(String("CIELChuv"),
        CMetryCalculator::Convert(Vector(50.0f, 0.2f, 0.4f, "CIELuv"), "CIELChuv").GetConditions().GetColorSpace());
}

TEST(CMetryCalculator, ConvertRefusesWaysBack)
{
    EXPECT_EQ("Conversion not supported from ColorSpace CIELCh to ColorSpace CIELab",
        CMetryFailure([] { CMetryCalculator::Convert(Vector(50.0f, 10.0f, 30.0f, "CIELCh"), "CIELab"); }));
    EXPECT_EQ("Conversion not supported from ColorSpace CIExyY to ColorSpace CIEXYZ",
        CMetryFailure([] { CMetryCalculator::Convert(Vector(0.3f, 0.3f, 30.0f, "CIExyY"), "CIEXYZ"); }));
    EXPECT_EQ("Conversion not supported from ColorSpace HunterLab to ColorSpace CIELab",
        CMetryFailure([] { CMetryCalculator::Convert(Vector(50.0f, 1.0f, 1.0f, "HunterLab"), "RGB"); }));
}

TEST(CMetryCalculator, DeltaVectorSignsTheHueDifference)
{
    const HvColorVector delta =
        CMetryCalculator::GetDeltaVector(Vector(50.0f, 10.0f, 0.0f, "CIELab"), Vector(50.0f, 0.0f, 10.0f, "CIELab"));
    ExpectVector(delta, 0.0, 0.0, -std::sqrt(200.0), 1e-4, "counter-clockwise");
    EXPECT_EQ(String("CIELCh"), delta.GetConditions().GetColorSpace());
    ExpectVector(
        CMetryCalculator::GetDeltaVector(Vector(50.0f, 0.0f, 10.0f, "CIELab"), Vector(40.0f, 10.0f, 0.0f, "CIELab")),
        10.0, 0.0, std::sqrt(200.0), 1e-4, "clockwise");
    ExpectVector(
        CMetryCalculator::GetDeltaVector(Vector(60.0f, 30.0f, 40.0f, "CIELab"), Vector(55.0f, 3.0f, 4.0f, "CIELab")),
        5.0, 45.0, 0.0, 1e-3, "same hue");
    EXPECT_EQ(String("CIELChuv"),
        CMetryCalculator::GetDeltaVector(Vector(50.0f, 0.2f, 0.4f, "CIELuv"), Vector(50.0f, 0.2f, 0.4f, "CIELuv"))
            .GetConditions()
            .GetColorSpace());
    EXPECT_EQ(String("LCHmg"),
        CMetryCalculator::GetDeltaVector(Vector(50.0f, 2.0f, 4.0f, "LABmg"), Vector(50.0f, 2.0f, 4.0f, "LABmg"))
            .GetConditions()
            .GetColorSpace());
    EXPECT_EQ("CMetryCalculator", CMetryFailure([] {
        CMetryCalculator::GetDeltaVector(Vector(50.0f, 2.0f, 4.0f, "CIEXYZ"), Vector(50.0f, 2.0f, 4.0f, "CIEXYZ"));
    }));
}
