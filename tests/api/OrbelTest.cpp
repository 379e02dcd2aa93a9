#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "include/orbel.h"
#include "tests/TemporaryDirectory.h"
#include "tests/api/ApiSimEnvironment.h"
#include "tests/support/HolderProcess.h"

namespace {

std::string LastError()
{
    return OB_GetDeviceInfo("LastError");
}

void Sim(const std::vector<std::string>& command)
{
    ApiSimEnvironment::Sim().Command(command);
}

bool Eventually(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

// Each test starts from a connected module in mode 3 with its defaults and no results.
class OrbelApiTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ApiSimEnvironment::Sim().Run({"plug"});
        ASSERT_TRUE(Eventually([] { return OB_IsConnected() == OB_NoError; }));
        ASSERT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
        ASSERT_EQ(OB_SetOption("MeasurementMode", "Reset"), OB_NoError);
    }

    static void CalibrateOnTheTile()
    {
        Sim({"place", "tile"});
        ASSERT_EQ(OB_Calibrate(), OB_NoError) << LastError();
    }

    static void MeasureReflectanceOf(const std::string& target)
    {
        Sim({"place", target});
        ASSERT_EQ(OB_TriggerMeasurement(), OB_NoError) << LastError();
    }

    static std::vector<float> Spectrum(int32_t index)
    {
        std::vector<float> values(36, -1.0f);
        EXPECT_EQ(OB_GetSpectrum(values.data(), index), OB_NoError) << LastError();
        return values;
    }

    static void ExpectSignal(const std::vector<float>& spectrum)
    {
        float highest = 0.0f;
        for (float value : spectrum) {
            highest = std::max(highest, value);
        }
        EXPECT_GT(highest, 0.0f);
    }
};

}

TEST_F(OrbelApiTest, ReflectanceIsCalibratedMeasuredAndReadUnderTheOptionsOfTheMoment)
{
    CalibrateOnTheTile();
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 0);
    MeasureReflectanceOf("sample:grey50");
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 1);

    const std::vector<float> first = Spectrum(-1);
    EXPECT_EQ(first, Spectrum(0));
    for (float value : first) {
        EXPECT_NEAR(value, 0.5f, 0.03f);
    }

    float lab[3];
    ASSERT_EQ(OB_GetTriStimulus(lab, 0), OB_NoError) << LastError();
    EXPECT_NEAR(lab[0], 76.07f, 1.5f);
    EXPECT_NEAR(lab[1], 0.0f, 1.5f);
    EXPECT_NEAR(lab[2], 0.0f, 1.5f);

    ASSERT_EQ(OB_SetOption("colorspacedescription.TYPE", "CIEXYZ"), OB_NoError) << LastError();
    EXPECT_STREQ(OB_GetOption("ColorSpaceDescription.Type"), "CIEXYZ");
    float xyz[3];
    ASSERT_EQ(OB_GetTriStimulus(xyz, -1), OB_NoError) << LastError();
    EXPECT_NEAR(xyz[1], 50.0f, 3.0f);

    float unused[36];
    EXPECT_EQ(OB_GetSpectrum(unused, -2), OB_NoDataAvailable);
    EXPECT_EQ(LastError(), "no data available index-2 is out of range");
    EXPECT_EQ(OB_GetTriStimulus(unused, 1), OB_NoDataAvailable);
    EXPECT_EQ(LastError(), "no data available index1 is out of range");

    ASSERT_EQ(OB_Calibrate(), OB_NoError);
    EXPECT_EQ(OB_GetSpectrum(unused, 0), OB_NoDataAvailable);
    EXPECT_EQ(LastError(), "no data available measurement not triggered !!");
}

TEST_F(OrbelApiTest, DensitiesNeedASubstrateUnlessTheWhiteBaseIsAbsolute)
{
    CalibrateOnTheTile();
    MeasureReflectanceOf("sample:tcs09");
    float density = 0.0f;
    float densities[4] = {};
    EXPECT_EQ(OB_GetDensity(&density, 0), OB_NoSubstrateWhiteReference);
    EXPECT_EQ(LastError(), "no substrate white reference set");

    ASSERT_EQ(OB_SetOption("Colorimetric.WhiteBase", "Absolute"), OB_NoError);
    ASSERT_EQ(OB_GetDensity(&density, 0), OB_NoError) << LastError();
    EXPECT_GT(density, 0.0f);
    EXPECT_STRNE(OB_GetDeviceInfo("Colorimetric.DensityFilterMode"), "not set");

    ASSERT_EQ(OB_SetOption("Colorimetric.WhiteBase", "Automatic"), OB_NoError);
    std::vector<float> paper(36, 0.9f);
    ASSERT_EQ(OB_SetSubstrate(paper.data()), OB_NoError);
    int32_t autoIndex = -1;
    ASSERT_EQ(OB_GetDensities(densities, &autoIndex, 0), OB_NoError) << LastError();
    EXPECT_GE(autoIndex, 0);
    EXPECT_LE(autoIndex, 4);
    EXPECT_STREQ(OB_GetOption("Colorimetric.DensityFilterMode"), "Auto");
    ASSERT_EQ(OB_GetDensities(densities, nullptr, 0), OB_NoError);
    EXPECT_STREQ(OB_GetOption("Colorimetric.DensityFilterMode"), "Black");

    ASSERT_EQ(OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    MeasureReflectanceOf("sample:tcs09");
    EXPECT_EQ(OB_GetDensity(&density, 0), OB_NoSubstrateWhiteReference);
}

TEST_F(OrbelApiTest, OptionKeysIgnoreCaseValuesDoNotAndUnknownKeysAreRefused)
{
    ASSERT_EQ(OB_SetOption("colorimetric.illumination", "D50"), OB_NoError) << LastError();
    EXPECT_STREQ(OB_GetOption("COLORIMETRIC.ILLUMINATION"), "D50");
    EXPECT_EQ(OB_SetOption("Colorimetric.Illumination", "d50"), OB_ExceptionOccured);
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D50");

    EXPECT_EQ(OB_SetOption("Gloss", "High"), OB_ExceptionOccured);
    EXPECT_EQ(LastError(), "exception occured Modification not supported for key: Gloss");
    EXPECT_STREQ(OB_GetOption("Gloss"), "Undefined");
    EXPECT_STREQ(OB_GetOption("CustomCondition"), "Undefined");

    EXPECT_STREQ(OB_GetOption("Recognition"), "no");
    ASSERT_EQ(OB_SetOption("RECOGNITION", "YES"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("Recognition"), "yes");
    ASSERT_EQ(OB_SetOption("Recognition", "maybe"), OB_NoError);
    EXPECT_STREQ(OB_GetDeviceInfo("Recognition"), "no");

    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D65");
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleReflectance"), OB_NoError);
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D50");
}

TEST_F(OrbelApiTest, InstrumentKeysAreExactAndTheKeyPressIsConsumed)
{
    EXPECT_STREQ(OB_GetDeviceInfo("SerialNumber"), "1000001");
    EXPECT_STREQ(OB_GetDeviceInfo("serialnumber"), "");
    EXPECT_STREQ(OB_GetDeviceInfo("Connection"), "yes");

    EXPECT_EQ(OB_KeyPressed(), OB_KeyNotPressed);
    Sim({"press"});
    EXPECT_TRUE(Eventually([] { return OB_KeyPressed() == OB_NoError; }));
    EXPECT_EQ(OB_KeyPressed(), OB_KeyNotPressed);
    Sim({"press"});
    EXPECT_TRUE(Eventually([] { return std::string(OB_GetDeviceInfo("IsKeyPressed")) == "yes"; }));
    EXPECT_STREQ(OB_GetDeviceInfo("IsKeyPressed"), "no");
}

TEST_F(OrbelApiTest, ResetDropsTheResultsOfTheCurrentDeviceOnly)
{
    CalibrateOnTheTile();
    MeasureReflectanceOf("sample:grey30");
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    CalibrateOnTheTile();
    Sim({"strip", "builtin:grey8"});
    ASSERT_EQ(OB_TriggerMeasurement(), OB_NoError) << LastError();
    ExpectSignal(Spectrum(0));
    ASSERT_EQ(OB_SetOption("Colorimetric.Illumination", "A"), OB_NoError);

    ASSERT_EQ(OB_SetOption("MeasurementMode", "reset"), OB_NoError);
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 0);
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D65");
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleReflectance"), OB_NoError);
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), 1);
}

TEST_F(OrbelApiTest, ScanningGivesRawPositionsOrRecognisedPatches)
{
    ASSERT_EQ(OB_SetOption("Recognition", "yes"), OB_NoError);
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    CalibrateOnTheTile();

    Sim({"strip", "builtin:grey8"});
    ASSERT_EQ(OB_TriggerMeasurement(), OB_NoError) << LastError();
    const int32_t patches = OB_GetNumberOfAvailableSamples();
    EXPECT_EQ(patches, 8);

    // Too fast for its 12 mm patches: refused, never patches of the wrong colours, and the
    // patches of the scan before stay readable.
    Sim({"strip", "builtin:grey8", "--speed", "300"});
    EXPECT_EQ(OB_TriggerMeasurement(), OB_StripRecognitionFailed);
    EXPECT_NE(LastError().find("Recognition impossible"), std::string::npos) << LastError();
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), patches);

    ASSERT_EQ(OB_SetOption("Recognition", "no"), OB_NoError);
    Sim({"strip", "builtin:grey8"});
    ASSERT_EQ(OB_TriggerCountedScan(-1), OB_NoError) << LastError();
    EXPECT_GT(OB_GetNumberOfAvailableSamples(), patches);
    ExpectSignal(Spectrum(OB_GetNumberOfAvailableSamples() - 1));
}

// The count takes the readings of a position that many at a time; a count below 1 leaves the
// instrument's own, and one above what a position holds is refused and loses nothing.
TEST_F(OrbelApiTest, CountedScansTakeTheCallersCountOrRefuseIt)
{
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    CalibrateOnTheTile();
    Sim({"strip", "builtin:grey8"});
    ASSERT_EQ(OB_TriggerCountedScan(-1), OB_NoError) << LastError();
    const int32_t byDefault = OB_GetNumberOfAvailableSamples();
    for (const int32_t count : {INT32_MIN, 0}) {
        ASSERT_EQ(OB_TriggerCountedScan(count), OB_NoError) << count << ": " << LastError();
        EXPECT_EQ(OB_GetNumberOfAvailableSamples(), byDefault) << count;
    }
    for (const int32_t count : {1, 3, 25}) {
        ASSERT_EQ(OB_TriggerCountedScan(count), OB_NoError) << count << ": " << LastError();
        EXPECT_EQ(OB_GetNumberOfAvailableSamples() % count, 0) << count;
    }
    const int32_t kept = OB_GetNumberOfAvailableSamples();
    for (const int32_t count : {26, 257, 100000}) {
        EXPECT_EQ(OB_TriggerCountedScan(count), OB_InvalidArgument) << count;
        EXPECT_NE(LastError().find(std::to_string(count)), std::string::npos) << LastError();
        EXPECT_EQ(OB_GetNumberOfAvailableSamples(), kept);
    }
}

// Tuning values and paper whites that would give numbers of nothing are refused where they are
// set, with the value in the message, and what was set before stays.
TEST_F(OrbelApiTest, ValuesThatMakeNoNumbersAreRefusedWhereTheyAreSet)
{
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleEmission"), OB_NoError);
    ASSERT_EQ(OB_SetOption("CustomCondition", "Enable"), OB_NoError);
    const std::pair<const char*, const char*> refused[] = {{"Orbel_IntegrationTime", "0"},
        {"Orbel_IntegrationTime", "nan"}, {"Orbel_IntegrationTime", "abc"}, {"Orbel_IntegrationTime", "-1"},
        {"Orbel_NumberOfSamples", "-5"}, {"Orbel_NumberOfSamples", "1.5"}};
    for (const auto& [key, value] : refused) {
        EXPECT_EQ(OB_SetOption(key, value), OB_InvalidArgument) << key << " " << value;
        EXPECT_NE(LastError().find(std::string(key) + " \"" + value + "\""), std::string::npos) << LastError();
    }
    EXPECT_EQ(OB_SetOption("Orbel_IntegrationTime", "0.25"), OB_NoError);

    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleReflectance"), OB_NoError);
    CalibrateOnTheTile();
    MeasureReflectanceOf("sample:grey50");
    std::vector<float> paper(36, 0.9f);
    ASSERT_EQ(OB_SetSubstrate(paper.data()), OB_NoError);
    float density = 0.0f;
    ASSERT_EQ(OB_GetDensity(&density, 0), OB_NoError) << LastError();
    for (const float wrong : {INFINITY, 3.4e38f, NAN, 1e-45f}) {
        paper[7] = wrong;
        EXPECT_EQ(OB_SetSubstrate(paper.data()), OB_InvalidArgument) << wrong;
        EXPECT_NE(LastError().find("substrate value 7 is "), std::string::npos) << LastError();
        float again = 0.0f;
        EXPECT_EQ(OB_GetDensity(&again, 0), OB_NoError);
        EXPECT_EQ(again, density);
    }
}

// An instrument that is there but doesn't open says why, and works once the cause has gone.
TEST_F(OrbelApiTest, AFailedOpenTellsItsCause)
{
    Sim({"unplug"});
    // Over USB the module hears of it a moment later, from the system.
    EXPECT_TRUE(Eventually([] { return OB_IsConnected() == OB_DeviceNotConnected; }));
    // Each attempt to open takes some twenty questions of the power.
    Sim({"fault", "low-power", "--count", "300"});
    Sim({"plug"});
    Sim({"place", "tile"});
    // Over USB the instrument arrives a moment after the plug; a call that it arrives during may
    // find no device to open and still see one at its end.
    ASSERT_TRUE(Eventually([] { return OB_IsConnected() == OB_NoError; }));
    int failures = 0;
    int32_t code = OB_Calibrate();
    for (; code != OB_NoError && failures < 20; code = OB_Calibrate()) {
        ++failures;
        EXPECT_EQ(code, OB_ExceptionOccured);
        EXPECT_NE(LastError().find("Not enough power available"), std::string::npos) << LastError();
    }
    EXPECT_GT(failures, 0);
    EXPECT_EQ(code, OB_NoError) << LastError();
}

// A scanning calibration cut short leaves the instrument not calibrated, which tells the host
// what to do.
TEST_F(OrbelApiTest, AFailedScanCalibrationLeavesTheScanNotCalibrated)
{
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    CalibrateOnTheTile();
    Sim({"fault", "bulk-timeout", "--count", "2"});
    EXPECT_NE(OB_Calibrate(), OB_NoError);
    Sim({"strip", "builtin:grey8"});
    EXPECT_EQ(OB_TriggerMeasurement(), OB_DeviceNotCalibrated) << LastError();
    CalibrateOnTheTile();
    EXPECT_EQ(OB_TriggerMeasurement(), OB_NoError) << LastError();
}

TEST_F(OrbelApiTest, APulledCableGivesTwoAndThePluggedInstrumentComesBackWithItsWhite)
{
    CalibrateOnTheTile();
    ASSERT_EQ(OB_SetOption("Colorimetric.Illumination", "D50"), OB_NoError);
    Sim({"fault", "drop"});
    Sim({"place", "sample:grey50"});
    EXPECT_EQ(OB_TriggerMeasurement(), OB_DeviceNotConnected);
    EXPECT_EQ(LastError().rfind("device not connected ", 0), 0u) << LastError();
    EXPECT_EQ(OB_IsConnected(), OB_DeviceNotConnected);
    EXPECT_EQ(OB_KeyPressed(), OB_DeviceNotConnected);
    EXPECT_STREQ(OB_GetDeviceInfo("SerialNumber"), "device not connected!");
    EXPECT_STREQ(OB_GetDeviceInfo("IsKeyPressed"), "device not connected");

    Sim({"plug"});
    ASSERT_TRUE(Eventually([] { return OB_IsConnected() == OB_NoError; }));
    Sim({"place", "sample:grey50"});
    EXPECT_STREQ(OB_GetOption("Colorimetric.Illumination"), "D65");
    ASSERT_EQ(OB_TriggerMeasurement(), OB_NoError) << LastError();
    EXPECT_NEAR(Spectrum(0)[20], 0.5f, 0.03f);
}

// 60 patches of 24 mm: some 2360 readings at 50 mm/s, one every 0.6 mm.
constexpr int rampPatches = 60;
constexpr float rampStep = 0.9f / (rampPatches - 1);

// A grey ramp of even steps. The aperture blurs each edge over some six readings, so a reading
// lost or out of order shows as a step down or a step up of half a patch's step or more.
std::string WriteRamp(const TemporaryDirectory& directory)
{
    const std::string path = directory.Path() + "/ramp.txt";
    std::ofstream out(path);
    for (int i = 0; i < rampPatches; ++i) {
        out << 24.0;
        for (int band = 0; band < 36; ++band) {
            out << ' ' << 0.05 + rampStep * i;
        }
        out << '\n';
    }
    return path;
}

// Thousands of readings come through the double-buffered bulk reads, every one in its place, and
// the scan ends where the instrument's last short block says.
TEST_F(OrbelApiTest, ALongRawStripArrivesWholeAndInOrder)
{
    const TemporaryDirectory directory;
    const std::string ramp = WriteRamp(directory);
    ASSERT_EQ(OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    CalibrateOnTheTile();
    Sim({"strip", ramp, "--speed", "50"});
    ASSERT_EQ(OB_TriggerCountedScan(1), OB_NoError) << LastError();
    const int32_t positions = OB_GetNumberOfAvailableSamples();
    ASSERT_GE(positions, 2000);
    float before = Spectrum(0)[20];
    for (int32_t i = 1; i < positions; ++i) {
        const float now = Spectrum(i)[20];
        ASSERT_GE(now - before, -0.002f) << "reading " << i << " of " << positions;
        ASSERT_LE(now - before, rampStep / 2) << "reading " << i << " of " << positions;
        before = now;
    }
    EXPECT_NEAR(before, 0.95f, 0.03f);
    Sim({"strip", ramp, "--speed", "50"});
    ASSERT_EQ(OB_TriggerCountedScan(1), OB_NoError) << LastError();
    EXPECT_EQ(OB_GetNumberOfAvailableSamples(), positions);
}

// The cable goes in the middle of a measurement or of a scan: the call answers 2 at once, and the
// instrument plugged in again measures on the white it had.
TEST_F(OrbelApiTest, ACableLostMidwayGivesTwoAndTheInstrumentComesBack)
{
    struct Case {
        const char* mode;
        const char* dropAfterTransfers;
    };
    const TemporaryDirectory directory;
    const std::string ramp = WriteRamp(directory);
    for (const Case& midway : {Case{"SingleReflectance", "3"}, Case{"ScanningReflectance", "12"}}) {
        SCOPED_TRACE(midway.mode);
        ASSERT_EQ(OB_SetOption("MeasurementMode", midway.mode), OB_NoError);
        CalibrateOnTheTile();
        Sim({"strip", ramp});
        Sim({"fault", "drop", "--count", midway.dropAfterTransfers});
        EXPECT_EQ(OB_TriggerMeasurement(), OB_DeviceNotConnected) << LastError();
        EXPECT_EQ(OB_IsConnected(), OB_DeviceNotConnected);
        Sim({"plug"});
        ASSERT_TRUE(Eventually([] { return OB_IsConnected() == OB_NoError; }));
    }
    ASSERT_EQ(OB_SetOption("MeasurementMode", "SingleReflectance"), OB_NoError);
    MeasureReflectanceOf("sample:grey50");
    EXPECT_NEAR(Spectrum(-1)[20], 0.5f, 0.03f);
}

// In a process of its own, which has no device object yet: while the holder has the lock every
// call fails, and once the holder has gone the next call succeeds.
int RefusedUntilTheHolderGoes(bool killed)
{
    HolderProcess holder("Orbel C-SDK lock", 0);
    const bool refused = holder.ReadLine() == "locked" && OB_IsConnected() == OB_UnknownError &&
        OB_KeyPressed() == OB_UnknownError && OB_Calibrate() == OB_UnknownError &&
        OB_GetNumberOfAvailableSamples() == 0 && std::string(OB_GetOption("MeasurementMode")) == "Unknown Error" &&
        std::string(OB_GetDeviceInfo("Version")) == "Orbel aready in use by another process.";
    if (killed) {
        holder.Kill();
    } else {
        holder.Release();
        holder.ReadLine();
    }
    return refused && std::string(OB_GetDeviceInfo("Version")) == "1.0.5" ? 0 : 1;
}

TEST(OrbelProcessLockDeathTest, ASecondProcessIsRefusedUntilTheFirstEndsOrIsKilled)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(RefusedUntilTheHolderGoes(false)), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(std::exit(RefusedUntilTheHolderGoes(true)), testing::ExitedWithCode(0), "");
}
