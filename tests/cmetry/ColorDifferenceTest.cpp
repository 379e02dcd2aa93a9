#include "cmetry/ColorDifference.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "cmetry/CMetryCalculator.h"
#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::CMetryCalculator;
using CMetry::ColorDifference;
using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using CMetry::Illumination;
using CMetry::IlluminationTYPE;

namespace {

struct Lab {
    double l;
    double a;
    double b;
};

HvMeasureConditions Conditions(const char* formula, const char* colorSpace = "CIELab")
{
    HvMeasureConditions conditions;
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", formula);
    conditions.SetCondition("ColorSpaceDescription.Type", colorSpace);
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    return conditions;
}

// A smooth step from low to high around the edge, in nm.
HvSpectrum Step(float low, float high, double edge)
{
    HvSpectrum spectrum;
    for (uint16_t index = 0; index < 36; ++index) {
        const double wavelength = 380.0 + 10.0 * index;
        spectrum[index] = static_cast<float>(low + (high - low) / (1.0 + std::exp(-(wavelength - edge) / 20.0)));
    }
    return spectrum;
}

Lab LabOf(const HvSpectrum& spectrum)
{
    const HvColorVector lab = CMetryCalculator::GetVector(spectrum, Conditions("CIELab"));
    return {lab[0], lab[1], lab[2]};
}

// The textbook formulas, written out here without the code under test: the hue difference from
// delta a and delta b, the hue angle by atan2, all in double precision.
struct Differences {
    double lightness;
    double chroma;
    double hueSquared;
    double standardChroma;
    double standardHue;
};

Differences Of(const Lab& standard, const Lab& sample)
{
    const double chroma1 = std::hypot(standard.a, standard.b);
    const double chroma2 = std::hypot(sample.a, sample.b);
    const double da = standard.a - sample.a;
    const double db = standard.b - sample.b;
    const double dc = chroma1 - chroma2;
    double hue = std::atan2(standard.b, standard.a) * 180.0 / M_PI;
    hue = hue < 0.0 ? hue + 360.0 : hue;
    return {standard.l - sample.l, dc, da * da + db * db - dc * dc, chroma1, hue};
}

double ReferenceCIE1994(const Lab& standard, const Lab& sample, double kl, double kc, double kh)
{
    const Differences d = Of(standard, sample);
    const double sc = 1.0 + 0.045 * d.standardChroma;
    const double sh = 1.0 + 0.015 * d.standardChroma;
    return std::sqrt(
        std::pow(d.lightness / kl, 2) + std::pow(d.chroma / (kc * sc), 2) + d.hueSquared / std::pow(kh * sh, 2));
}

double ReferenceCMC(const Lab& standard, const Lab& sample, double l, double c)
{
    const Differences d = Of(standard, sample);
    const double sl = standard.l < 16.0 ? 0.511 : 0.040975 * standard.l / (1.0 + 0.01765 * standard.l);
    const double sc = 0.0638 * d.standardChroma / (1.0 + 0.0131 * d.standardChroma) + 0.638;
    const double f = std::sqrt(std::pow(d.standardChroma, 4) / (std::pow(d.standardChroma, 4) + 1900.0));
    const double h = d.standardHue;
    const double t = (h >= 164.0 && h <= 345.0) ? 0.56 + std::fabs(0.2 * std::cos((h + 168.0) * M_PI / 180.0))
                                                : 0.36 + std::fabs(0.4 * std::cos((h + 35.0) * M_PI / 180.0));
    const double sh = sc * (f * t + 1.0 - f);
    return std::sqrt(std::pow(d.lightness / (l * sl), 2) + std::pow(d.chroma / (c * sc), 2) + d.hueSquared / (sh * sh));
}

HvColorVector LabVector(const Lab& lab, const char* formula)
{
    return HvColorVector(
        static_cast<float>(lab.l), static_cast<float>(lab.a), static_cast<float>(lab.b), Conditions(formula));
}

// The first pair of the published CIEDE2000 test data, for which the same table lists the CIELab
// difference 4.0011 and the CIE 1994 difference 1.3950.
constexpr Lab publishedStandard = {50.0, 2.6772, -79.7751};
constexpr Lab publishedSample = {50.0, 0.0, -82.7485};

}

TEST(ColorDifference, EqualSpectraDifferByNothingUnderEveryFormula)
{
    const HvSpectrum spectrum = Step(0.1f, 0.7f, 580.0);
    for (const char* formula : {"CIELab", "LABmg", "CIELuv", "FMCII", "CMC", "94"}) {
        EXPECT_EQ(0.0f, ColorDifference::GetDeltaE(spectrum, spectrum, Conditions(formula), 2.0f, 1.0f, 1.0f))
            << formula;
    }
}

TEST(ColorDifference, CIE1994OfVectorsMatchesThePublishedPair)
{
    EXPECT_NEAR(1.3950, ReferenceCIE1994(publishedStandard, publishedSample, 1, 1, 1), 5e-5);
    const HvColorVector standard = LabVector(publishedStandard, "94");
    const HvColorVector sample = LabVector(publishedSample, "94");
    EXPECT_NEAR(1.3950, ColorDifference::GetDeltaE(standard, sample, 1.0f, 1.0f, 1.0f), 1e-4);
    EXPECT_NEAR(4.0011, ColorDifference::GetDeltaE(LabVector(publishedStandard, "CIELab"), sample, 0, 0, 0), 1e-4);
    const Lab standard2 = {60.2574, -34.0099, 36.2677};
    const Lab sample2 = {60.4626, -34.1751, 39.4387};
    EXPECT_NEAR(ReferenceCIE1994(standard2, sample2, 2, 1, 1),
        ColorDifference::GetDeltaE(LabVector(standard2, "94"), LabVector(sample2, "94"), 2.0f, 1.0f, 1.0f), 1e-4);
    const float swapped = ColorDifference::GetDeltaE(sample, standard, 1.0f, 1.0f, 1.0f);
    EXPECT_NEAR(ReferenceCIE1994(publishedSample, publishedStandard, 1, 1, 1), swapped, 1e-4);
    EXPECT_GT(std::fabs(swapped - 1.3950f), 0.01f);
}

TEST(ColorDifference, CIE1994AndCMCOfSpectraFollowTheirLabs)
{
    const HvSpectrum standard = Step(0.05f, 0.8f, 590.0);
    const HvSpectrum sample = Step(0.08f, 0.75f, 600.0);
    const Lab lab1 = LabOf(standard);
    const Lab lab2 = LabOf(sample);
    EXPECT_NEAR(ReferenceCIE1994(lab1, lab2, 1, 1, 1),
        ColorDifference::GetDeltaE(standard, sample, Conditions("94"), 1.0f, 1.0f, 1.0f), 1e-4);
    EXPECT_NEAR(ReferenceCIE1994(lab1, lab2, 2, 1, 1),
        ColorDifference::GetDeltaE(standard, sample, Conditions("94"), 2.0f, 1.0f, 1.0f), 1e-4);
    // The reference formula itself against the published pair: CMC(1:1) 1.7387.
    EXPECT_NEAR(1.7387, ReferenceCMC(publishedStandard, publishedSample, 1, 1), 5e-5);
    EXPECT_NEAR(ReferenceCMC(lab1, lab2, 2, 1),
        ColorDifference::GetDeltaE(standard, sample, Conditions("CMC"), 2.0f, 1.0f, 0.0f), 1e-3);
    EXPECT_NEAR(ReferenceCMC(lab1, lab2, 1, 1),
        ColorDifference::GetDeltaE(standard, sample, Conditions("CMC"), 1.0f, 1.0f, 0.0f), 1e-3);
    const HvSpectrum blue = Step(0.6f, 0.1f, 500.0);
    EXPECT_NEAR(ReferenceCMC(LabOf(blue), lab2, 2, 1),
        ColorDifference::GetDeltaE(blue, sample, Conditions("CMC"), 2.0f, 1.0f, 0.0f), 1e-3);
    const HvSpectrum dark = Flat(0.01f);
    EXPECT_NEAR(ReferenceCMC(LabOf(dark), lab2, 2, 1),
        ColorDifference::GetDeltaE(dark, sample, Conditions("CMC"), 2.0f, 1.0f, 0.0f), 1e-3);
    EXPECT_GT(std::fabs(ColorDifference::GetDeltaE(sample, standard, Conditions("CMC"), 2.0f, 1.0f, 0.0f) -
                  ColorDifference::GetDeltaE(standard, sample, Conditions("CMC"), 2.0f, 1.0f, 0.0f)),
        0.01f);
}

TEST(ColorDifference, PlainDifferencesAreEuclideanInTheirSpace)
{
    const HvSpectrum standard = Step(0.05f, 0.8f, 590.0);
    const HvSpectrum sample = Step(0.3f, 0.4f, 500.0);
    const Lab lab1 = LabOf(standard);
    const Lab lab2 = LabOf(sample);
    EXPECT_NEAR(std::sqrt(std::pow(lab1.l - lab2.l, 2) + std::pow(lab1.a - lab2.a, 2) + std::pow(lab1.b - lab2.b, 2)),
        ColorDifference::GetDeltaE(standard, sample, Conditions("CIELab"), 0, 0, 0), 1e-4);
    const HvColorVector luv1 = CMetryCalculator::GetVector(standard, Conditions("CIELab", "CIELuv"));
    const HvColorVector luv2 = CMetryCalculator::GetVector(sample, Conditions("CIELab", "CIELuv"));
    EXPECT_NEAR(std::hypot(luv1[0] - luv2[0], std::hypot(luv1[1] - luv2[1], luv1[2] - luv2[2])),
        ColorDifference::GetDeltaE(standard, sample, Conditions("CIELuv"), 0, 0, 0), 1e-4);
    EXPECT_GT(ColorDifference::GetDeltaE(standard, sample, Conditions("FMCII"), 0, 0, 0), 1.0f);
    EXPECT_GT(ColorDifference::GetDeltaE(standard, sample, Conditions("LABmg"), 0, 0, 0), 1.0f);
}

TEST(ColorDifference, WhatCannotBeComputedFails)
{
    const HvSpectrum spectrum = Step(0.05f, 0.8f, 590.0);
    EXPECT_EQ("CMetryCalculator",
        CMetryFailure([] { ColorDifference::GetDeltaE(Flat(0.0f), Flat(0.0f), Conditions("FMCII"), 0, 0, 0); }));
    EXPECT_EQ("CMetryCalculator",
        CMetryFailure([&] { ColorDifference::GetDeltaE(spectrum, spectrum, Conditions("94"), 0.0f, 1.0f, 1.0f); }));
    EXPECT_EQ("CMetryCalculator", CMetryFailure([] {
        ColorDifference::GetDeltaE(
            LabVector(publishedStandard, "94"), LabVector(publishedSample, "94"), 1.0f, 1.0f, 0.0f);
    }));
    EXPECT_EQ("CMetryCalculator", CMetryFailure([] {
        ColorDifference::GetDeltaE(LabVector(publishedStandard, "FMCII"), LabVector(publishedSample, "FMCII"), 0, 0, 0);
    }));
    EXPECT_EQ("GetDeltaE not supported for DeltaEFormula Undefined",
        CMetryFailure([&] { ColorDifference::GetDeltaE(spectrum, spectrum, Conditions("Undefined"), 0, 0, 0); }));
}

TEST(ColorDifference, TwoLabsGiveWhatTheirSpectraGiveOrFailByName)
{
    const HvSpectrum standard = Step(0.05f, 0.8f, 590.0);
    const HvSpectrum sample = Step(0.08f, 0.75f, 600.0);
    const Lab lab1 = LabOf(standard);
    const Lab lab2 = LabOf(sample);
    for (const char* formula : {"CIELab", "94", "CMC", "CIEDE2000"}) {
        EXPECT_NEAR(ColorDifference::GetDeltaE(standard, sample, Conditions(formula), 2.0f, 1.0f, 1.0f),
            ColorDifference::GetLabDeltaE(LabVector(lab1, "CIELab"), LabVector(lab2, "CIELab"), formula, 2, 1, 1), 1e-5)
            << formula;
    }
    EXPECT_EQ("GetDeltaE not supported for DeltaEFormula CIELuv", CMetryFailure([&] {
        ColorDifference::GetLabDeltaE(LabVector(lab1, "CIELab"), LabVector(lab2, "CIELab"), "CIELuv", 1, 1, 1);
    }));
    EXPECT_EQ("CMetryCalculator", CMetryFailure([&] {
        ColorDifference::GetLabDeltaE(LabVector(lab1, "CIELab"), LabVector(lab2, "CIELab"), "CIEDE2000", 0, 1, 1);
    }));
}

TEST(ColorDifference, VectorsInOtherSpacesAreComparedInCIELab)
{
    const HvSpectrum standard = Step(0.05f, 0.8f, 590.0);
    const HvSpectrum sample = Step(0.3f, 0.4f, 500.0);
    HvMeasureConditions xyzConditions = Conditions("CIELab", "CIEXYZ");
    const HvColorVector xyz1 = CMetryCalculator::GetVector(standard, xyzConditions);
    const HvColorVector xyz2 = CMetryCalculator::GetVector(sample, xyzConditions);
    EXPECT_NEAR(ColorDifference::GetDeltaE(standard, sample, Conditions("CIELab"), 0, 0, 0),
        ColorDifference::GetDeltaE(xyz1, xyz2, 0, 0, 0), 1e-3);
}

TEST(ColorDifference, MetamerismIndexCorrectsByTheReferenceIlluminant)
{
    const HvSpectrum standard = Step(0.05f, 0.8f, 590.0);
    const HvSpectrum sample = Step(0.1f, 0.6f, 560.0);
    const HvMeasureConditions conditions = Conditions("CIELab");
    EXPECT_NEAR(0.0f,
        ColorDifference::GetMetamerismIndex(standard, sample, conditions, IlluminationTYPE(Illumination::D65)), 1e-3);
    EXPECT_EQ(
        0.0f, ColorDifference::GetMetamerismIndex(standard, standard, conditions, IlluminationTYPE(Illumination::A)));
    EXPECT_GT(
        ColorDifference::GetMetamerismIndex(standard, sample, conditions, IlluminationTYPE(Illumination::A)), 0.1f);
    EXPECT_EQ("CMetryCalculator", CMetryFailure([&] {
        ColorDifference::GetMetamerismIndex(standard, sample, conditions, IlluminationTYPE(Illumination::Userdefined));
    }));
}
