#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "include/orbel.h"
#include "tests/api/ApiSimEnvironment.h"

namespace {

const char* const codeTexts[] = {
    "no error",
    "device not ready",
    "device not connected",
    "device not calibrated",
    "unkown code \"4\"",
    "no substrate white reference set",
    "wrong measurement mode",
    "strip recognition failed",
    "no data available",
    "exception occured",
    "invalid argument",
    "unkown error",
};

// A status code is one of the table, and "LastError" begins with its text.
void ExpectStatusInTheTable(int32_t code, const std::string& call)
{
    ASSERT_GE(code, OB_NoError) << call;
    ASSERT_LE(code, OB_UnknownError) << call;
    EXPECT_NE(code, OB_DeviceNotReady) << call;
    EXPECT_NE(code, OB_KeyNotPressed) << call;
    const std::string lastError = OB_GetDeviceInfo("LastError");
    EXPECT_EQ(lastError.rfind(codeTexts[code], 0), 0u) << call << ": " << lastError;
}

void Sim(const std::vector<std::string>& command)
{
    ApiSimEnvironment::Sim().Run(command);
}

const char* const modes[] = {
    "SingleReflectance", "ScanningReflectance", "SingleEmission", "SingleAmbientLight", "Reset"};
const char* const faults[] = {"control-timeout", "bulk-timeout", "short-read", "drop", "low-power"};
const char* const targets[] = {"tile", "sample:tcs03", "sample:grey70", "display:white", "light:a"};

}

TEST(OrbelSoakTest, MixedCallsUnderRandomFaultsAnswerCodesOfTheTable)
{
    std::mt19937 random(20261123);
    std::vector<float> values(36, 0.8f);
    int32_t autoIndex = 0;
    for (int call = 0; call < 1000; ++call) {
        const std::string name = "call " + std::to_string(call);
        const unsigned pick = random() % 16;
        if (pick == 0) {
            Sim({"fault", faults[random() % 5]});
        } else if (pick == 1) {
            Sim({"plug"});
            Sim({"place", targets[random() % 5]});
        } else if (pick == 2) {
            ExpectStatusInTheTable(OB_SetOption("MeasurementMode", modes[random() % 5]), name + " mode");
        } else if (pick == 3) {
            ExpectStatusInTheTable(OB_Calibrate(), name + " calibrate");
        } else if (pick <= 6) {
            ExpectStatusInTheTable(OB_TriggerMeasurement(), name + " trigger");
        } else if (pick == 7) {
            ExpectStatusInTheTable(OB_TriggerCountedScan(static_cast<int32_t>(random() % 50)), name + " scan");
        } else if (pick == 8) {
            ExpectStatusInTheTable(
                OB_GetSpectrum(values.data(), static_cast<int32_t>(random() % 4) - 2), name + " spectrum");
        } else if (pick == 9) {
            ExpectStatusInTheTable(OB_GetTriStimulus(values.data(), 0), name + " tristimulus");
        } else if (pick == 10) {
            ExpectStatusInTheTable(OB_GetDensities(values.data(), &autoIndex, -1), name + " densities");
        } else if (pick == 11) {
            ExpectStatusInTheTable(
                OB_SetOption("ColorSpaceDescription.Type", random() % 2 ? "CIEXYZ" : "CIELab"), name + " colour space");
        } else if (pick == 12) {
            std::vector<float> paper(36, 0.9f);
            ExpectStatusInTheTable(OB_SetSubstrate(paper.data()), name + " substrate");
        } else if (pick == 13) {
            const int32_t connected = OB_IsConnected();
            EXPECT_TRUE(connected == OB_NoError || connected == OB_DeviceNotConnected) << name;
        } else if (pick == 14) {
            const int32_t key = OB_KeyPressed();
            EXPECT_TRUE(key == OB_KeyNotPressed || key == OB_NoError || key == OB_DeviceNotConnected) << name;
        } else {
            EXPECT_GE(OB_GetNumberOfAvailableSamples(), 0) << name;
        }
    }
    Sim({"plug"});
}
