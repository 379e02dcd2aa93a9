#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "include/orbel.h"
#include "tests/api/ApiSimEnvironment.h"

namespace {

void Sim(const std::vector<std::string>& command)
{
    ApiSimEnvironment::Sim().Command(command);
}

// Calibrates on black, measures the target and gives the highest value of the spectrum.
float HighestOfMeasured(const char* mode, const char* target)
{
    EXPECT_EQ(OB_SetOption("MeasurementMode", mode), OB_NoError);
    Sim({"place", "black"});
    EXPECT_EQ(OB_Calibrate(), OB_NoError) << OB_GetDeviceInfo("LastError");
    Sim({"place", target});
    EXPECT_EQ(OB_TriggerMeasurement(), OB_NoError) << OB_GetDeviceInfo("LastError");
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 1);
    std::vector<float> spectrum(36, 0.0f);
    EXPECT_EQ(OB_GetSpectrum(spectrum.data(), -1), OB_NoError);
    return *std::max_element(spectrum.begin(), spectrum.end());
}

}

TEST(OrbelEmissionTest, EmissionAndAmbientLightAreMeasuredInTheirOwnModes)
{
    ApiSimEnvironment::Sim().Run({"plug"});
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    EXPECT_GT(HighestOfMeasured("SingleEmission", "display:white"), 0.0f);
    EXPECT_GT(HighestOfMeasured("SingleAmbientLight", "light:daylight"), 0.0f);

    ASSERT_EQ(OB_SetOption("Colorimetric.Illumination", "A"), OB_NoError);
    ASSERT_EQ(OB_SetOption("MeasurementMode", "Reset"), OB_NoError);
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 0);
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D65");
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 1);
}
