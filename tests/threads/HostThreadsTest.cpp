#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "include/orbel.h"
#include "tests/api/ApiSimEnvironment.h"

namespace {

using Clock = std::chrono::steady_clock;

void Sim(const std::vector<std::string>& command)
{
    ApiSimEnvironment::Sim().Command(command);
}

void PlugIn()
{
    ApiSimEnvironment::Sim().Run({"plug"});
}

// A few seconds in the ordinary run; ORBEL_STRESS_SECONDS sets it for the sanitizer runs.
std::chrono::seconds StressDuration()
{
    const char* seconds = std::getenv("ORBEL_STRESS_SECONDS");
    return std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 5);
}

bool IsStatus(int32_t code)
{
    return code >= OB_NoError && code <= OB_UnknownError && code != OB_DeviceNotConnected;
}

// The thread that got a text reads it to its end, whatever the other threads call meanwhile.
bool IsReadable(const char* text)
{
    return text != nullptr && std::strlen(text) < 4096;
}

const char* const modes[] = {
    "SingleReflectance", "ScanningReflectance", "SingleEmission", "SingleAmbientLight", "Reset", "ResetAll"};
const char* const infoKeys[] = {"LastError", "SerialNumber", "Connection", "MeasurementMode", "AvailableSamples"};
const char* const optionKeys[] = {"Colorimetric.Illumination", "ColorSpaceDescription.Type", "Recognition"};

// One of the fourteen functions, picked by the number; false when it answers what it never may
// with the instrument plugged in.
bool CallOne(std::mt19937& random)
{
    std::vector<float> values(36, 0.5f);
    int32_t autoIndex = 0;
    const int32_t index = static_cast<int32_t>(random() % 3) - 1;
    switch (random() % 14) {
    case 0:
        return IsReadable(OB_GetDeviceInfo(infoKeys[random() % 5]));
    case 1:
        return OB_IsConnected() == OB_NoError;
    case 2:
        return OB_KeyPressed() == OB_KeyNotPressed;
    case 3:
        return OB_GetNumberOfAvailableSamples() >= -1;
    case 4:
        return IsStatus(OB_Calibrate());
    case 5:
        return IsStatus(OB_TriggerMeasurement());
    case 6:
        return IsStatus(OB_TriggerCountedScan(static_cast<int32_t>(5 + random() % 3 * 5)));
    case 7:
        return IsStatus(OB_GetSpectrum(values.data(), index));
    case 8:
        return IsStatus(OB_GetTriStimulus(values.data(), index));
    case 9:
        return IsStatus(OB_GetDensity(values.data(), index));
    case 10:
        return IsStatus(OB_GetDensities(values.data(), &autoIndex, index));
    case 11:
        return IsStatus(OB_SetOption("MeasurementMode", modes[random() % 6]));
    case 12:
        return IsReadable(OB_GetOption(optionKeys[random() % 3]));
    default:
        return IsStatus(OB_SetSubstrate(values.data()));
    }
}

}

// A host's interface thread polls while its worker runs a long emission measurement: every poll
// answers at once that the instrument is there and its key not pressed, and the measurement
// ends well.
TEST(HostThreadsTest, PollsAnswerAtOnceDuringAnotherThreadsMeasurement)
{
    PlugIn();
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    Sim({"place", "black"});
    ASSERT_EQ(OB_Calibrate(), OB_NoError) << OB_GetDeviceInfo("LastError");
    Sim({"place", "display:white"});
    ASSERT_EQ(OB_SetOption("CustomCondition", "Enable"), OB_NoError);
    // Four readings of half a second.
    ASSERT_EQ(OB_SetOption("Orbel_NumberOfSamples", "4"), OB_NoError);

    std::atomic<bool> measuring{true};
    int32_t measured = OB_UnknownError;
    std::thread worker([&] {
        measured = OB_TriggerMeasurement();
        measuring = false;
    });
    int answersDuringMeasurement = 0;
    int wrongAnswers = 0;
    while (measuring) {
        const bool right = OB_IsConnected() == OB_NoError && OB_KeyPressed() == OB_KeyNotPressed;
        wrongAnswers += right ? 0 : 1;
        answersDuringMeasurement += right && measuring ? 1 : 0;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    worker.join();
    EXPECT_EQ(measured, OB_NoError) << OB_GetDeviceInfo("LastError");
    EXPECT_EQ(wrongAnswers, 0);
    EXPECT_GE(answersDuringMeasurement, 10);
    EXPECT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
}

// Eight threads call every function in random order on a plugged-in instrument: nothing
// crashes, and no call answers "not connected" or a code outside the table.
TEST(HostThreadsTest, EightThreadsMixingEveryFunction)
{
    PlugIn();
    Sim({"place", "tile"});
    const Clock::time_point end = Clock::now() + StressDuration();
    std::atomic<int> wrongAnswers{0};
    std::atomic<int> calls{0};
    std::vector<std::thread> threads;
    for (unsigned thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&, thread] {
            std::mt19937 random(20261124 + thread);
            while (Clock::now() < end) {
                wrongAnswers += CallOne(random) ? 0 : 1;
                ++calls;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrongAnswers, 0) << "of " << calls << " calls; last error " << OB_GetDeviceInfo("LastError");
    EXPECT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
}
