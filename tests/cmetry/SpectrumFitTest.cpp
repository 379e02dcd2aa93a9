#include "cmetry/SpectrumFit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvLab.h"
#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::CMetryCalculator;
using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using CMetry::SpectrumFit;

namespace {

HvColorVector Lab(float lightness, float a, float b)
{
    return CMetry::HvLab(lightness, a, b, HvMeasureConditions());
}

double DistanceToColour(const HvSpectrum& spectrum, const HvColorVector& lab)
{
    HvColorVector fitted = CMetryCalculator::GetVector(spectrum, HvMeasureConditions());
    fitted.Subtract(lab);
    return fitted.GetLength();
}

int CountOf(const HvSpectrum& spectrum, float value)
{
    int count = 0;
    for (uint16_t index = 0; index < 36; ++index) {
        count += spectrum[index] == value ? 1 : 0;
    }
    return count;
}

}

TEST(SpectrumFit, WhiteAndBlackMoveEveryDataPointToItsBound)
{
    HvSpectrum out;
    SpectrumFit white(Lab(100.0f, 0.0f, 0.0f), 0.1, false, 1000);
    ASSERT_TRUE(white.Run(out));
    EXPECT_EQ(36, white.GetSteps());
    EXPECT_EQ(36, CountOf(out, 1.0f));
    SpectrumFit black(Lab(0.0f, 0.0f, 0.0f), 0.1, false, 1000);
    ASSERT_TRUE(black.Run(out));
    EXPECT_EQ(36, black.GetSteps());
    for (uint16_t index = 0; index < 36; ++index) {
        EXPECT_NEAR(0.0f, out[index], 1e-6f) << index;
    }
}

TEST(SpectrumFit, GreyIsReachedQuicklyAndJagged)
{
    const HvColorVector grey = Lab(50.0f, 0.0f, 0.0f);
    HvSpectrum out;
    SpectrumFit fit(grey, 0.1, false, 1000);
    ASSERT_TRUE(fit.Run(out));
    EXPECT_GE(fit.GetSteps(), 20);
    EXPECT_LE(fit.GetSteps(), 32);
    EXPECT_GT(CountOf(out, 0.5f), 0);
    EXPECT_GT(CountOf(out, 0.0f), 0);
    EXPECT_LT(DistanceToColour(out, grey), 0.1);
    SpectrumFit byCIE94(grey, 0.1, true, 1000);
    ASSERT_TRUE(byCIE94.Run(out));
    EXPECT_LT(DistanceToColour(out, grey), 0.2);
}

TEST(SpectrumFit, SaturatedGreenTakesHundredsOfSteps)
{
    const HvColorVector green = Lab(95.0f, -60.0f, 60.0f);
    HvSpectrum out;
    SpectrumFit fit(green, 0.1, false, 1000);
    ASSERT_TRUE(fit.Run(out));
    EXPECT_GE(fit.GetSteps(), 400);
    EXPECT_LE(fit.GetSteps(), 600);
    EXPECT_LT(DistanceToColour(out, green), 0.1);
    EXPECT_LT(DistanceToColour(SpectrumFit::GetSpectrum(green), green), 0.1);
    SpectrumFit tooFew(green, 0.1, false, 100);
    EXPECT_FALSE(tooFew.Run(out));
    EXPECT_EQ(101, tooFew.GetSteps());
}

TEST(SpectrumFit, ColourOutsideReflectancesIsRefused)
{
    const HvColorVector vivid = Lab(50.0f, 100.0f, 100.0f);
    EXPECT_EQ("CMetryCalculator: Conversion out of Range", CMetryFailure([&] { SpectrumFit::GetSpectrum(vivid); }));
    HvSpectrum out;
    EXPECT_FALSE(CMetry::FitSpectrum(vivid, out, 0.1, false, 1000));
    for (uint16_t index = 0; index < 36; ++index) {
        EXPECT_GE(out[index], 0.0f);
        EXPECT_LE(out[index], 1.0f);
    }
}

TEST(SpectrumFit, OtherColourSpacesAreFittedThroughCIELab)
{
    const HvColorVector lab = Lab(60.0f, 10.0f, 20.0f);
    const HvColorVector xyz = CMetryCalculator::Convert(lab, "CIEXYZ");
    EXPECT_LT(DistanceToColour(SpectrumFit::GetSpectrum(xyz), lab), 0.1);
    EXPECT_EQ("Conversion not supported from ColorSpace CIELCh to ColorSpace CIELab",
        CMetryFailure([&] { SpectrumFit::GetSpectrum(CMetryCalculator::Convert(lab, "CIELCh")); }));
}
