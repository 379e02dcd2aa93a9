#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "include/orbel.h"
#include "tests/api/ApiSimEnvironment.h"

namespace {

// An instrument that is plugged in but doesn't answer, or answers only half, in one way.
struct Unanswered {
    const char* fault;
    // What "LastError" names as the step that got no answer.
    const char* says;
};

struct ExportedCall {
    const char* name;
    std::function<int32_t()> call;
};

const std::vector<ExportedCall> calls = {
    {"OB_IsConnected", [] { return OB_IsConnected(); }},
    {"OB_KeyPressed", [] { return OB_KeyPressed(); }},
    {"OB_Calibrate", [] { return OB_Calibrate(); }},
    {"OB_TriggerMeasurement", [] { return OB_TriggerMeasurement(); }},
    {"OB_SetOption", [] { return OB_SetOption("Colorimetric.Illumination", "D50"); }},
    {"OB_TriggerCountedScan",
        [] {
            OB_SetOption("MeasurementMode", "ScanningReflectance");
            return OB_TriggerCountedScan(5);
        }},
};

// One opening waits for two transfers at most (the power question and the reset after it, or
// the memory); the first call after the plug may also meet the driver asking after the
// connection it lost, with its reset.
constexpr long timedOutPerCall = 4;

// The transfers the instrument let run out, from its status.
long TimedOutTransfers()
{
    const std::string status = ApiSimEnvironment::Sim().Run({"status"}).out;
    const std::string key = "\"timeouts\":";
    return std::stol(status.substr(status.find(key) + key.size()));
}

class OrbelBoundsTest : public ::testing::TestWithParam<Unanswered> {
protected:
    void TearDown() override
    {
        OB_SetOption("MeasurementMode", "SingleReflectance");
        ApiSimEnvironment::Sim().Command({"place", "tile"});
        // The fault is used up by calls until the instrument opens again.
        ApiSimEnvironment::Sim().Command({"fault", GetParam().fault, "--count", "1"});
        for (int call = 0; call < 10 && OB_Calibrate() != OB_NoError; ++call) {
        }
        EXPECT_EQ(OB_IsConnected(), OB_NoError);
    }
};

}

// However long the instrument stays silent, each call tries to open it once: it waits for each
// step of the opening at most once (the EEPROM, or the power question and the reset after it),
// and answers 9 naming the step. The instrument stays attached all the while.
TEST_P(OrbelBoundsTest, EachCallWaitsForOneOpeningAndSaysWhatDidNotAnswer)
{
    const Unanswered& unanswered = GetParam();
    ApiSimEnvironment::Sim().Command({"unplug"});
    ASSERT_EQ(OB_IsConnected(), OB_DeviceNotConnected);
    ApiSimEnvironment::Sim().Command({"fault", unanswered.fault, "--count", "1000"});
    ApiSimEnvironment::Sim().Command({"plug"});
    for (const ExportedCall& exported : calls) {
        const long before = TimedOutTransfers();
        const int32_t code = exported.call();
        EXPECT_LE(TimedOutTransfers() - before, timedOutPerCall) << exported.name;
        const std::string lastError = OB_GetDeviceInfo("LastError");
        if (exported.name == std::string("OB_IsConnected")) {
            EXPECT_EQ(code, OB_NoError) << "the instrument is attached";
            continue;
        }
        EXPECT_EQ(code, OB_ExceptionOccured) << exported.name << ": " << lastError;
        if (exported.name != std::string("OB_KeyPressed")) {
            EXPECT_NE(lastError.find(unanswered.says), std::string::npos) << exported.name << ": " << lastError;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, OrbelBoundsTest,
    ::testing::Values(Unanswered{"control-timeout",
                          "No communication to the device: PaviloFunctionality_PC::GetMISC Device IO control failed "
                          "(Linux Error (1460) : Connection timed out"},
        Unanswered{"bulk-timeout",
            "PaviloFunctionality_PC::ReadEEPROM Read data failed (Linux Error (1460) : Connection timed out"},
        Unanswered{"short-read", "PaviloFunctionality_PC::ReadEEPROM Read data failed (Not enough data)"},
        Unanswered{"low-power", "Not enough power available"}),
    [](const ::testing::TestParamInfo<Unanswered>& info) {
        std::string name = info.param.fault;
        std::erase(name, '-');
        return name;
    });
