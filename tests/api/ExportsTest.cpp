#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "include/orbel.h"

namespace {

std::string LastError()
{
    return OB_GetDeviceInfo("LastError");
}

void ResetAll()
{
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
}

}

TEST(ExportsDeathTest, BeforeAnyStatusFunctionLastErrorIsNoErrorAndOneBlank)
{
    // A process of its own, so that no earlier test has stored anything.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(LastError() == "no error " ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(ExportsTest, NullArgumentsAnswerInvalidArgument)
{
    float values[36] = {};
    int32_t autoIndex = 0;
    struct Call {
        const char* name;
        int32_t code;
    };
    const Call calls[] = {
        {"OB_GetSpectrum", OB_GetSpectrum(nullptr, 0)},
        {"OB_GetTriStimulus", OB_GetTriStimulus(nullptr, -1)},
        {"OB_GetDensity", OB_GetDensity(nullptr, 3)},
        {"OB_GetDensities", OB_GetDensities(nullptr, &autoIndex, 0)},
        {"OB_GetDensities both", OB_GetDensities(nullptr, nullptr, 0)},
        {"OB_SetOption key", OB_SetOption(nullptr, "D65")},
        {"OB_SetOption value", OB_SetOption("Colorimetric.Illumination", nullptr)},
        {"OB_SetOption mode", OB_SetOption("MeasurementMode", nullptr)},
        {"OB_SetSubstrate", OB_SetSubstrate(nullptr)},
    };
    for (const Call& call : calls) {
        EXPECT_EQ(call.code, OB_InvalidArgument) << call.name;
    }
    EXPECT_EQ(LastError(), "invalid argument");

    ResetAll();
    EXPECT_STREQ(OB_GetDeviceInfo(nullptr), "invalid argument");
    EXPECT_EQ(LastError(), "invalid argument");

    ResetAll();
    ASSERT_STREQ(OB_GetDeviceInfo("Version"), "1.0.5");
    EXPECT_STREQ(OB_GetOption(nullptr), "1.0.5");
    EXPECT_EQ(LastError(), "invalid argument");

    EXPECT_NE(OB_GetDensities(values, nullptr, 0), OB_InvalidArgument);
    EXPECT_NE(LastError(), "invalid argument");
}

TEST(ExportsTest, ModesAreSetAndReadWithoutRegardToCase)
{
    ResetAll();
    EXPECT_STREQ(OB_GetOption("MeasurementMode"), "SingleReflectance");

    EXPECT_EQ(OB_SetOption("measurementMODE", "scanningREFLECTANCE"), OB_NoError);
    EXPECT_EQ(LastError(), "no error");
    EXPECT_STREQ(OB_GetOption("MEASUREMENTMODE"), "ScanningReflectance");
    EXPECT_STREQ(OB_GetDeviceInfo("measurementmode"), "ScanningReflectance");

    EXPECT_EQ(OB_SetOption("MeasurementMode", "Scanning"), OB_InvalidMeasurementMode);
    EXPECT_EQ(LastError(), "wrong measurement mode");
    EXPECT_STREQ(OB_GetOption("MeasurementMode"), "ScanningReflectance");

    EXPECT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("MeasurementMode"), "SingleEmission");
    EXPECT_EQ(OB_SetOption("MeasurementMode", "singleambientlight"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("MeasurementMode"), "SingleAmbientLight");

    EXPECT_EQ(OB_SetOption("MeasurementMode", "RESETALL"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("MeasurementMode"), "SingleReflectance");
}

TEST(ExportsTest, CountedScanOutsideTheScanningModeIsTheWrongMode)
{
    ResetAll();
    EXPECT_EQ(OB_TriggerCountedScan(5), OB_InvalidMeasurementMode);
    EXPECT_EQ(LastError(), "wrong measurement mode");
    EXPECT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    EXPECT_EQ(OB_TriggerCountedScan(-1), OB_InvalidMeasurementMode);
    ResetAll();
}

TEST(ExportsTest, ResetAllClearsTheStoreAndTheAutomaticFilter)
{
    ASSERT_EQ(OB_SetOption("MeasurementMode", "nonsense"), OB_InvalidMeasurementMode);
    ResetAll();
    EXPECT_EQ(LastError(), "no error");
    EXPECT_STREQ(OB_GetDeviceInfo("Colorimetric.DensityFilterMode"), "not set");
    EXPECT_STREQ(OB_GetDeviceInfo("VERSION"), "1.0.5");
}

TEST(ExportsTest, ConnectionAndKeyQuestionsLeaveTheStoreAlone)
{
    ResetAll();
    ASSERT_EQ(OB_SetOption("MeasurementMode", "nonsense"), OB_InvalidMeasurementMode);
    EXPECT_EQ(OB_IsConnected(), OB_NoError);
    EXPECT_EQ(OB_KeyPressed(), OB_KeyNotPressed);
    EXPECT_EQ(LastError(), "wrong measurement mode");
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 0);
    EXPECT_EQ(LastError(), "wrong measurement mode");
    ResetAll();
}
