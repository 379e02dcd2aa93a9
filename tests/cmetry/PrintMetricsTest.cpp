#include "cmetry/PrintMetrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "cmetry/PaperWhite.h"
#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::DensityFilterMode;
using CMetry::DensityStandard;
using CMetry::HvDensities;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

HvSpectrum OfDensity(double density)
{
    return Flat(static_cast<float>(std::pow(10.0, -density)));
}

// A halftone whose Murray-Davies area against a solid of reflectance 0.1 on white paper is the area.
HvSpectrum Tint(double area)
{
    return Flat(static_cast<float>(1.0 - 0.9 * area));
}

class PrintMetrics : public ::testing::Test {
protected:
    void SetUp() override { CMetry::SetPaperWhite(Flat(1.0f)); }
};

}

TEST_F(PrintMetrics, DotAreaRunsFromPaperToSolid)
{
    const HvSpectrum solid = Flat(0.1f);
    float area = -1.0f;
    ASSERT_TRUE(CMetry::GetDotArea(solid, solid, DensityStandard::DIN, DensityFilterMode::Cyan, area));
    EXPECT_NEAR(1.0f, area, 1e-6f);
    ASSERT_TRUE(CMetry::GetDotArea(solid, Flat(1.0f), DensityStandard::DIN, DensityFilterMode::Auto, area));
    EXPECT_NEAR(0.0f, area, 1e-6f);
    ASSERT_TRUE(CMetry::GetDotArea(solid, Tint(0.4), DensityStandard::ANSIA, DensityFilterMode::Max, area));
    EXPECT_NEAR(0.4f, area, 1e-5f);
    ASSERT_TRUE(CMetry::GetDotArea(Flat(0.995f), Tint(0.4), DensityStandard::DIN, DensityFilterMode::Cyan, area));
    EXPECT_EQ(0.0f, area);
    // Yule-Nielsen with n = 2 takes the square roots of the reflectances.
    ASSERT_TRUE(CMetry::GetDotArea(solid, Flat(0.55f), DensityStandard::DIN, DensityFilterMode::Cyan, 2.0f, area));
    EXPECT_NEAR((1.0 - std::sqrt(0.55)) / (1.0 - std::sqrt(0.1)), area, 1e-5);
}

TEST_F(PrintMetrics, DotGainAndSlurInPercentPoints)
{
    const HvSpectrum solid = Flat(0.1f);
    const HvMeasureConditions conditions;
    EXPECT_NEAR(18.0f, CMetry::GetDotGain(Tint(0.68), solid, conditions, 50.0f), 1e-3f);
    Utilities::Vector<HvSpectrum> halftones(3);
    halftones[0] = Tint(0.50);
    halftones[1] = Tint(0.52);
    halftones[2] = Tint(0.48);
    EXPECT_NEAR(6.0f, CMetry::GetSlur(halftones, solid, conditions), 1e-3f);
    Utilities::Vector<HvSpectrum> single(1);
    single[0] = Tint(0.3);
    EXPECT_EQ(0.0f, CMetry::GetSlur(single, solid, conditions));
}

TEST_F(PrintMetrics, WithoutPaperWhiteDotGainAndSlurFail)
{
    CMetry::SetPaperWhite(Flat(0.0f));
    const HvMeasureConditions conditions;
    EXPECT_EQ("Calculation of dot gain failed",
        CMetryFailure([&] { CMetry::GetDotGain(Tint(0.5), Flat(0.1f), conditions, 50.0f); }));
    Utilities::Vector<HvSpectrum> halftones(2);
    EXPECT_EQ("Calculation of slur failed at Halftone 0",
        CMetryFailure([&] { CMetry::GetSlur(halftones, Flat(0.1f), conditions); }));
}

TEST_F(PrintMetrics, PrintContrastAndTrapping)
{
    float value = 0.0f;
    ASSERT_TRUE(CMetry::GetPrintContrast(
        OfDensity(1.0), OfDensity(0.6), DensityStandard::DIN, true, DensityFilterMode::Cyan, value));
    EXPECT_NEAR(0.4f, value, 1e-5f);
    ASSERT_TRUE(CMetry::GetPrintContrast(
        Flat(1.0f), OfDensity(0.6), DensityStandard::DIN, true, DensityFilterMode::Cyan, value));
    EXPECT_EQ(0.0f, value);
    ASSERT_TRUE(CMetry::GetTrapping(
        OfDensity(0.5), OfDensity(1.0), OfDensity(1.2), DensityStandard::DIN, DensityFilterMode::Magenta, value));
    EXPECT_NEAR(0.7f, value, 1e-5f);
    ASSERT_TRUE(CMetry::GetTrapping(
        OfDensity(0.5), OfDensity(1.0), OfDensity(1.2), DensityStandard::DIN, DensityFilterMode::Max, value));
    EXPECT_NEAR(0.7f, value, 1e-5f);
    ASSERT_TRUE(CMetry::GetTrapping(
        OfDensity(0.5), Flat(1.0f), OfDensity(1.2), DensityStandard::DIN, DensityFilterMode::Yellow, value));
    EXPECT_EQ(1.0f, value);
    const HvMeasureConditions conditions;
    const HvDensities first({0.0f, 0.3f, 0.1f, 0.1f}, nullptr, DensityStandard::DIN, conditions);
    const HvDensities second({0.0f, 1.1f, 0.2f, 0.1f}, nullptr, DensityStandard::DIN, conditions);
    const HvDensities overprint({0.0f, 1.2f, 0.9f, 0.2f}, nullptr, DensityStandard::DIN, conditions);
    ASSERT_TRUE(CMetry::GetTrapping(first, second, overprint, DensityFilterMode::Cyan, value));
    EXPECT_NEAR((1.2f - 0.3f) / 1.1f, value, 1e-6f);
}

TEST_F(PrintMetrics, GraynessAndHueError)
{
    float value = 0.0f;
    ASSERT_TRUE(CMetry::GetGrayness(OfDensity(0.8), DensityStandard::DIN, true, value, true));
    EXPECT_NEAR(1.0f, value, 1e-5f);
    ASSERT_TRUE(CMetry::GetGrayness(Flat(1.0f), DensityStandard::DIN, true, value, false));
    EXPECT_EQ(1.0f, value);
    // Dark only where the cyan filter looks: magenta and yellow stay at the paper's density.
    HvSpectrum cyanInk = Flat(1.0f);
    for (uint16_t index = 21; index <= 27; ++index) {
        cyanInk[index] = 0.1f;
    }
    ASSERT_TRUE(CMetry::GetHueError(cyanInk, DensityStandard::DIN, true, value, false));
    EXPECT_EQ(0.0f, value);
    ASSERT_TRUE(CMetry::GetGrayness(cyanInk, DensityStandard::DIN, true, value, false));
    EXPECT_EQ(0.0f, value);
    ASSERT_TRUE(CMetry::GetHueError(Flat(1.0f), DensityStandard::DIN, true, value, true));
    EXPECT_EQ(0.0f, value);
}
