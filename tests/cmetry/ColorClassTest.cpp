#include "cmetry/ColorClass.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::ColorClass;

namespace {

int ClassAtHue(float lightness, float chroma, double degrees)
{
    const double radians = degrees * M_PI / 180.0;
    return ColorClass::GetColorClass(
        lightness, static_cast<float>(chroma * std::cos(radians)), static_cast<float>(chroma * std::sin(radians)));
}

std::string Name(int colorClass)
{
    return ColorClass::GetColorName(colorClass).CString();
}

}

TEST(ColorClass, AchromaticColoursGoByLightness)
{
    EXPECT_EQ(ColorClass::white, ColorClass::GetColorClass(Flat(1.0f)));
    EXPECT_EQ(ColorClass::black, ColorClass::GetColorClass(Flat(0.0f)));
    EXPECT_EQ(ColorClass::gray, ColorClass::GetColorClass(50.0f, 2.0f, 2.0f));
    EXPECT_EQ(ColorClass::gray, ColorClass::GetColorClass(50.0f, 5.6f, 5.6f));
    EXPECT_EQ(ColorClass::green, ClassAtHue(50.0f, 8.1f, 150.0));
    EXPECT_EQ(ColorClass::black, ColorClass::GetColorClass(30.0f, 0.0f, 0.0f));
    EXPECT_EQ(ColorClass::white, ColorClass::GetColorClass(101.0f, 0.0f, 0.0f));
    EXPECT_EQ("White", std::string(ColorClass::GetColorName(Flat(1.0f)).CString()));
    EXPECT_EQ("Black", std::string(ColorClass::GetColorName(Flat(0.0f)).CString()));
}

TEST(ColorClass, ChromaticColoursGoByHue)
{
    EXPECT_EQ(ColorClass::blue, ClassAtHue(50.0f, 40.0f, -61.5));
    EXPECT_EQ(ColorClass::violet, ClassAtHue(50.0f, 40.0f, -60.5));
    EXPECT_EQ(ColorClass::magenta, ClassAtHue(50.0f, 40.0f, 10.0));
    EXPECT_EQ(ColorClass::magenta, ClassAtHue(50.0f, 40.0f, 340.0));
    EXPECT_EQ(ColorClass::cyan, ClassAtHue(50.0f, 40.0f, 230.0));
    EXPECT_EQ(ColorClass::turquoise, ClassAtHue(50.0f, 40.0f, 190.0));
    EXPECT_EQ(ColorClass::olive, ClassAtHue(40.0f, 30.0f, 120.0));
    EXPECT_EQ(ColorClass::yellowGreen, ClassAtHue(60.0f, 30.0f, 120.0));
    EXPECT_EQ(ColorClass::red, ColorClass::GetColorClass(50.0f, 60.0f, 30.0f));
    EXPECT_EQ(ColorClass::brown, ColorClass::GetColorClass(40.0f, 20.0f, 10.0f));
    EXPECT_EQ(ColorClass::orange, ColorClass::GetColorClass(60.0f, 40.0f, 60.0f));
    EXPECT_EQ(ColorClass::brown, ColorClass::GetColorClass(40.0f, 20.0f, 20.0f));
    EXPECT_EQ(ColorClass::beige, ColorClass::GetColorClass(80.0f, 5.0f, 20.0f));
    EXPECT_EQ(ColorClass::yellow, ColorClass::GetColorClass(90.0f, -5.0f, 90.0f));
    EXPECT_EQ(ColorClass::olive, ColorClass::GetColorClass(50.0f, -5.0f, 40.0f));
    EXPECT_EQ(ColorClass::brown, ColorClass::GetColorClass(50.0f, 5.0f, 40.0f));
    EXPECT_EQ(ColorClass::olive, ColorClass::GetColorClass(50.0f, 0.0f, 40.0f));
    EXPECT_EQ(ColorClass::yellow, ColorClass::GetColorClass(70.0f, 0.0f, 80.0f));
    EXPECT_EQ(ColorClass::blue, ColorClass::GetColorClass(50.0f, 0.0f, -40.0f));
}

TEST(ColorClass, NamesFollowTheClasses)
{
    EXPECT_EQ("Undefined", Name(ColorClass::violet));
    EXPECT_EQ("Undefined", Name(ColorClass::failed));
    EXPECT_EQ("Turquo", Name(ColorClass::turquoise));
    EXPECT_EQ("YellowGreen", Name(ColorClass::yellowGreen));
    EXPECT_EQ("Magenta", Name(ColorClass::magenta));
    EXPECT_EQ("Gray", Name(ColorClass::gray));
}
