#include "cmetry/ColorTemperatureFinder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "cmetry/BlackBody.h"
#include "cmetry/CieTables.h"
#include "cmetry/HvColorVector.h"
#include "tests/cmetry/ColourSamples.h"

using namespace CMetryTest;
using CMetry::ColorTemperatureFinder;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

HvMeasureConditions Emission()
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "Emission");
    return conditions;
}

// A table at 1 nm from 300 nm, sampled at the 36 data points, as emission.
HvSpectrum Sampled(const CMetry::CieTables::Table& table)
{
    HvSpectrum spectrum;
    for (uint16_t index = 0; index < 36; ++index) {
        spectrum[index] = table.values[380 + 10 * index - table.minimum];
    }
    spectrum.SetConditions(Emission());
    return spectrum;
}

// Planck's law written out here, with the constants the instrument has always used.
double Radiance(double temperature, double wavelengthNm)
{
    const double h = 6.6262e-34;
    const double k = 1.3806e-23;
    const double c = 2.9979e8;
    const double metres = wavelengthNm * 1e-9;
    return 2.0 * h * c * c / std::pow(metres, 5) / (std::exp(c * h / k / (temperature * metres)) - 1.0);
}

}

TEST(ColorTemperatureFinder, BlackBodySpectrumIsPlanckOnTheInstrumentGrid)
{
    const HvSpectrum spectrum = CMetry::GetBlackBodySpectrum(5000.0f, HvMeasureConditions());
    EXPECT_EQ("Emission", std::string(spectrum.Conditions().GetCondition("Colorimetric.Illumination").CString()));
    for (uint16_t index = 0; index < 36; index += 5) {
        EXPECT_NEAR(1.0, spectrum[index] / Radiance(5000.0, 380.0 + 10.0 * index), 1e-6) << index;
    }
    const HvSpectrum cold = CMetry::GetBlackBodySpectrum(200.0f, HvMeasureConditions());
    EXPECT_EQ(0.0f, cold[0]);
    EXPECT_GT(cold[35], 0.0f);
    const CMetry::HvColorVector xyz = CMetry::GetBlackBodyXYZ(6500.0f, HvMeasureConditions());
    EXPECT_EQ(100.0f, xyz[1]);
    EXPECT_EQ("CIEXYZ", std::string(xyz.GetConditions().GetColorSpace().CString()));
    EXPECT_NEAR(0.3135, xyz[0] / (xyz[0] + xyz[1] + xyz[2]), 2e-3);
}

TEST(ColorTemperatureFinder, StandardIlluminantsHaveTheirTemperatures)
{
    const ColorTemperatureFinder finder;
    EXPECT_EQ(2856.0f, finder.GetColorTemperature(Sampled(CMetry::CieTables::Illuminant[0])));
    // With the published tables as Debian ships them the distance is smallest near 6507.8 K, so the
    // search ends on 6508; the last digit of D65 hangs on the source of the colour-matching data.
    EXPECT_NEAR(6507.0f, finder.GetColorTemperature(Sampled(CMetry::CieTables::Illuminant[4])), 1.0f);
}

TEST(ColorTemperatureFinder, BlackBodiesGiveTheirTemperatureBack)
{
    const ColorTemperatureFinder finder;
    for (float temperature = 1000.0f; temperature <= 25000.0f; temperature += 1000.0f) {
        const float found = finder.GetColorTemperature(CMetry::GetBlackBodySpectrum(temperature, Emission()));
        EXPECT_NEAR(temperature, found, 1.0f) << temperature;
        EXPECT_EQ(std::floor(found), found);
    }
}

TEST(ColorTemperatureFinder, EndsOfTheRangeAreResultsAndNoFailures)
{
    const ColorTemperatureFinder finder;
    // Deep red lies beyond the cold end of the locus, deep blue beyond the hot end.
    HvSpectrum red;
    red[35] = 1.0f;
    red.SetConditions(Emission());
    EXPECT_EQ(200.0f, finder.GetColorTemperature(red));
    HvSpectrum blue;
    blue[0] = 1.0f;
    blue.SetConditions(Emission());
    // Near the hot end the chromaticities of the trials differ by less than the float noise.
    EXPECT_NEAR(1000000.0f, finder.GetColorTemperature(blue), 100.0f);
}

TEST(ColorTemperatureFinder, ReflectanceIsSeenUnderItsOwnIlluminant)
{
    HvSpectrum white;
    for (uint16_t index = 0; index < 36; ++index) {
        white[index] = 1.0f;
    }
    white.Conditions().SetCondition("Colorimetric.WhiteBase", "Absolute");
    white.Conditions().SetCondition("Colorimetric.Illumination", "A");
    EXPECT_EQ(2856.0f, ColorTemperatureFinder().GetColorTemperature(white));
}

TEST(ColorTemperatureFinder, BestPointOutsideTheRangeFails)
{
    // Limits given the wrong way round leave the middle point below the lowest temperature.
    const float reversed[3] = {5000.0f, 1000.0f, 0.5f};
    EXPECT_EQ("Calculation of ColorTemperature failed", CMetryFailure([&] {
        ColorTemperatureFinder(reversed).GetColorTemperature(CMetry::GetBlackBodySpectrum(3000.0f, Emission()));
    }));
}
