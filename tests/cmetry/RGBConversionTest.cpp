#include "cmetry/RGBConversion.h"

#include <gtest/gtest.h>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/VellumCMMScreen.h"
#include "tests/cmetry/ColourSamples.h"
#include "utilities/ComponentCreatorNormal.h"

using CMetry::CMetryCalculator;
using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using Utilities::String;

namespace {

HvColorVector Lab(float lightness, float a, float b)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "D65");
    conditions.SetCondition("Colorimetric.Observer", "TwoDegree");
    conditions.SetCondition("Physical.Filter", "Polarizer");
    return HvColorVector(lightness, a, b, conditions);
}

void ExpectRGB(const HvColorVector& rgb, float red, float green, float blue)
{
    EXPECT_EQ(red, rgb[0]);
    EXPECT_EQ(green, rgb[1]);
    EXPECT_EQ(blue, rgb[2]);
    EXPECT_EQ(String("RGB"), rgb.GetConditions().GetColorSpace());
}

class FixedScreen : public CMetry::VellumCMMScreen {
public:
    HvColorVector ConvertLabToRGB(const HvColorVector& vector) override
    {
        return HvColorVector(1.0f, 2.0f, vector[0], HvMeasureConditions());
    }
};

class FailingScreen : public CMetry::VellumCMMScreen {
public:
    HvColorVector ConvertLabToRGB(const HvColorVector&) override { throw 42; }
};

}

TEST(RGBConversion, BuiltInConversionGivesWholeCodes)
{
    HvColorVector rgb;
    ASSERT_TRUE(CMetry::GetRGB(Lab(100.0f, 0.0f, 0.0f), rgb));
    ExpectRGB(rgb, 255.0f, 255.0f, 255.0f);
    EXPECT_EQ(CMetry::PhysicalFilter::Polarizer, rgb.GetConditions().GetPhysicalFilter());
    ASSERT_TRUE(CMetry::GetRGB(Lab(0.0f, 0.0f, 0.0f), rgb));
    ExpectRGB(rgb, 0.0f, 0.0f, 0.0f);
    ASSERT_TRUE(CMetry::GetRGB(Lab(50.0f, 0.0f, 0.0f), rgb));
    ExpectRGB(rgb, 119.0f, 119.0f, 119.0f);
}

TEST(RGBConversion, OutOfGamutChannelsClipOneByOne)
{
    HvColorVector green;
    ASSERT_TRUE(CMetry::GetRGB(Lab(60.0f, -90.0f, 60.0f), green));
    EXPECT_EQ(0.0f, green[0]);
    EXPECT_GT(green[1], 150.0f);
    EXPECT_LT(green[1], 255.0f);
    HvColorVector bright;
    ASSERT_TRUE(CMetry::GetRGB(Lab(100.0f, 40.0f, 0.0f), bright));
    EXPECT_EQ(255.0f, bright[0]);
    EXPECT_LT(bright[1], 255.0f);
}

TEST(RGBConversion, SpectraAndVectorsReachRGBAlike)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    conditions.SetCondition("ColorSpaceDescription.Type", "RGB");
    CMetry::HvSpectrum white = CMetryTest::Flat(1.0f);
    white.SetConditions(conditions);
    ExpectRGB(CMetryCalculator::GetVector(white, conditions), 255.0f, 255.0f, 255.0f);
    const HvColorVector lab = Lab(41.0f, 20.0f, -30.0f);
    const HvColorVector xyz = CMetryCalculator::Convert(lab, "CIEXYZ");
    EXPECT_EQ(CMetryCalculator::Convert(lab, "RGB"), CMetryCalculator::Convert(xyz, "RGB"));
}

TEST(RGBConversion, ScreenComponentDoesTheWorkUnlessItFails)
{
    HvColorVector reference;
    ASSERT_TRUE(CMetry::GetRGB(Lab(50.0f, 10.0f, 10.0f), reference));
    {
        Utilities::ComponentCreatorNormal<FixedScreen> screen("VellumCMMScreen", "$Revision: 1.0 $", "Test");
        HvColorVector rgb;
        ASSERT_TRUE(CMetry::GetRGB(Lab(50.0f, 10.0f, 10.0f), rgb));
        ExpectRGB(rgb, 1.0f, 2.0f, 50.0f);
        EXPECT_EQ(CMetry::PhysicalFilter::Polarizer, rgb.GetConditions().GetPhysicalFilter());
    }
    {
        Utilities::ComponentCreatorNormal<FailingScreen> screen("VellumCMMScreen", "$Revision: 1.0 $", "Test");
        HvColorVector rgb;
        ASSERT_TRUE(CMetry::GetRGB(Lab(50.0f, 10.0f, 10.0f), rgb));
        EXPECT_EQ(reference, rgb);
    }
    HvColorVector rgb;
    ASSERT_TRUE(CMetry::GetRGB(Lab(50.0f, 10.0f, 10.0f), rgb));
    EXPECT_EQ(reference, rgb);
}
