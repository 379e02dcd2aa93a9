#include <atomic>
#include <cmath>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "driver/ManualTimeBase.h"
#include "driver/RemissionHandle.h"
#include "driver/ServiceHandle.h"
#include "sim/SpectralTables.h"
#include "tests/driver/HandleSimFixture.h"

namespace DeviceDriverTest {

using DeviceDriver::ConfigurationData;
using DeviceDriver::RemissionHandle;
using DeviceDriver::SpectrumData;

namespace {

constexpr std::uint16_t adapt = 2011;
constexpr std::uint16_t lampOff = 2000;
constexpr std::uint16_t integrationTime = 2009;
constexpr std::uint16_t gain = 2002;

float Lightness(const Utilities::Vector<float>& spectrum)
{
    const CMetry::HvSpectrum values(spectrum);
    return CMetry::CMetryCalculator::GetVector(values, CMetry::HvMeasureConditions())[0];
}

}

class RemissionHandleTest : public HandleSimFixture {
protected:
    void Calibrated(RemissionHandle& handle)
    {
        OpenOnSim(handle);
        SetItem(handle, gain, 1);
        Place("tile");
        ASSERT_TRUE(handle.Calibrate()) << Text(handle.GetLastError());
    }

    SpectrumData Single(RemissionHandle& handle)
    {
        SpectrumData result;
        EXPECT_TRUE(handle.Measure("Single")) << Text(handle.GetLastError());
        EXPECT_TRUE(handle.GetResult(result)) << Text(handle.GetLastError());
        return result;
    }

    long State(RemissionHandle& handle, std::uint16_t id)
    {
        long value = -1;
        EXPECT_TRUE(handle.GetState(id, value)) << Text(handle.GetLastError());
        return value;
    }
};

TEST_F(RemissionHandleTest, EachBuiltInSampleIsMeasuredWithinTwoThousandths)
{
    RemissionHandle handle;
    Calibrated(handle);
    EXPECT_EQ(State(handle, 30005), 1) << "no filter without --uv-cut";
    for (int level = 10; level <= 90; level += 10) {
        Place("sample:grey" + std::to_string(level));
        const Utilities::Vector<float> result = FirstRow(Single(handle));
        for (unsigned long k = 0; k < 36; ++k) {
            ASSERT_NEAR(result[k], level / 100.0, 0.002) << "grey" << level << " at " << k;
        }
    }
    for (const OrbelSim::NamedSpectrum& sample : OrbelSim::SpectralTables::TestColourSamples()) {
        Place("sample:" + sample.name);
        const Utilities::Vector<float> result = FirstRow(Single(handle));
        for (unsigned long k = 0; k < 36; ++k) {
            ASSERT_NEAR(result[k], sample.values[k], 0.002) << sample.name << " at " << k;
        }
    }
}

TEST_F(RemissionHandleTest, NoisyLightnessOfMidGreyRepeatsWithinFiveHundredths)
{
    Restart({"--noise", "on"});
    RemissionHandle handle;
    Calibrated(handle);
    Place("sample:grey50");
    double sum = 0.0;
    double squares = 0.0;
    const int repeats = 20;
    for (int i = 0; i < repeats; ++i) {
        const double lightness = Lightness(FirstRow(Single(handle)));
        sum += lightness;
        squares += lightness * lightness;
    }
    const double mean = sum / repeats;
    const double deviation = std::sqrt((squares - repeats * mean * mean) / (repeats - 1));
    EXPECT_LT(deviation, 0.05);
    EXPECT_NEAR(mean, 76.07, 0.5);
}

TEST_F(RemissionHandleTest, UvCutInstrumentCalibratesWithFilterTwo)
{
    Restart({"--noise", "off", "--uv-cut"});
    RemissionHandle handle;
    Calibrated(handle);
    EXPECT_EQ(State(handle, 30005), 2);
}

TEST_F(RemissionHandleTest, FailuresEndInTheLastErrorAndLeaveTheLampOn)
{
    RemissionHandle handle;
    EXPECT_FALSE(handle.Measure("Single"));
    EXPECT_EQ(Text(handle.GetLastError()), "Handle not open!");
    long value = 0;
    EXPECT_FALSE(handle.GetState(30003, value));
    EXPECT_EQ(Text(handle.GetLastError()), "Measurement handle is not open!");

    OpenOnSim(handle);
    EXPECT_FALSE(handle.Measure("Double"));
    EXPECT_EQ(Text(handle.GetLastError()), "Unknown measurement type");
    EXPECT_FALSE(handle.Measure("Single"));
    EXPECT_EQ(Text(handle.GetLastError()), "Sample calculation: White data not valid");

    SetItem(handle, adapt, 0);
    Place("black");
    EXPECT_FALSE(handle.Calibrate());
    EXPECT_EQ(Text(handle.GetLastError()).rfind("White calculation: ", 0), 0u) << Text(handle.GetLastError());

    const std::uint32_t lampBefore = U32Item(handle, lampOff);
    sim.Command({"fault", "bulk-timeout", "--count", "3"});
    EXPECT_FALSE(handle.Measure("Dark"));
    EXPECT_EQ(Text(handle.GetLastError()).rfind("Measurement Error: ", 0), 0u) << Text(handle.GetLastError());
    EXPECT_EQ(U32Item(handle, lampOff), lampBefore) << "a failed dark puts the lamp back";
    EXPECT_TRUE(handle.IsOpen()) << "the handle stays open whatever failed";
}

// Without noise black reads exactly the dark, and the tile check divides by zero; with the noise
// of a real sensor the check sees no tile.
TEST_F(RemissionHandleTest, NoisyBlackFailsTheWhiteCheck)
{
    Restart({"--noise", "on"});
    RemissionHandle handle;
    OpenOnSim(handle);
    SetItem(handle, gain, 1);
    SetItem(handle, adapt, 0);
    Place("black");
    EXPECT_FALSE(handle.Calibrate());
    EXPECT_EQ("White calculation: White check failed", Text(handle.GetLastError()));
}

TEST_F(RemissionHandleTest, AdaptOverBlackSearchesANewIntegrationTime)
{
    RemissionHandle handle;
    OpenOnSim(handle);
    SetItem(handle, gain, 1);
    SetItem(handle, adapt, 1);
    Place("black");
    const float before = FloatItem(handle, integrationTime);
    const std::uint64_t measurementsBefore = Counter("measurements");
    EXPECT_FALSE(handle.Calibrate());
    EXPECT_NE(FloatItem(handle, integrationTime), before);
    EXPECT_GE(Counter("measurements"), measurementsBefore + 3) << "white, probe and second white";
}

TEST_F(RemissionHandleTest, StoredWhiteServesANewHandleAfterUnplugAndPlug)
{
    {
        RemissionHandle first;
        Calibrated(first);
        sim.Command({"unplug"});
        EXPECT_TRUE(Eventually([&] { return !first.IsOpen(); })) << "the lost connection closes the handle";
        sim.Command({"plug"});
    }
    RemissionHandle second;
    OpenOnSim(second);
    Place("sample:grey30");
    EXPECT_TRUE(second.Measure("StoredWhite")) << Text(second.GetLastError());
    EXPECT_NEAR(FirstRow(Single(second))[20], 0.3, 0.002);
}

TEST_F(RemissionHandleTest, MeasurementsHalfASecondApartWaitEightHundredMilliseconds)
{
    RemissionHandle handle;
    Calibrated(handle);
    Place("sample:grey50");
    Utilities::SmartPointer<DeviceDriver::ManualTimeBase> clock(new DeviceDriver::ManualTimeBase);
    const auto saved = DeviceDriver::TimeBase::Replace(clock);
    EXPECT_TRUE(handle.Measure("Dark"));
    clock->Advance(2000000);
    std::int64_t slept = clock->SleptMicroseconds();
    EXPECT_TRUE(handle.Measure("Dark"));
    const std::int64_t apart = clock->SleptMicroseconds() - slept;
    clock->Advance(500000);
    slept = clock->SleptMicroseconds();
    EXPECT_TRUE(handle.Measure("Dark"));
    const std::int64_t close = clock->SleptMicroseconds() - slept;
    DeviceDriver::TimeBase::Replace(saved);
    EXPECT_EQ(close - apart, 800000);
}

TEST_F(RemissionHandleTest, UnplugDuringMeasurementsReopensOnTheClientThread)
{
    RemissionHandle handle;
    Calibrated(handle);
    std::atomic<bool> running{true};
    std::atomic<int> failures{0};
    std::thread client([&] {
        while (running.load()) {
            if (!handle.Measure("Dark")) {
                ++failures;
            }
        }
    });
    ASSERT_TRUE(Eventually([&] { return Counter("dark_measurements") > 2; }));
    sim.Command({"unplug"});
    EXPECT_TRUE(Eventually([&] { return failures.load() > 0; }));
    sim.Command({"plug"});
    running = false;
    client.join();
    EXPECT_TRUE(Eventually([&] { return handle.Measure("Dark"); })) << Text(handle.GetLastError());
    EXPECT_TRUE(handle.IsOpen());
}

// The dark and the sample step of a measurement share one hold of the device's lock; the handle
// measures again once the instrument is back.
TEST_F(RemissionHandleTest, ACableLostMidwayFailsTheMeasurementAtOnce)
{
    RemissionHandle handle;
    OpenOnSim(handle);
    Place("tile");
    for (const char* transfersBeforeTheDrop : {"1", "2", "3", "4"}) {
        SCOPED_TRACE(transfersBeforeTheDrop);
        SetItem(handle, gain, 1);
        ASSERT_TRUE(handle.Calibrate()) << Text(handle.GetLastError());
        ExpectCableLossFailsAtOnce(transfersBeforeTheDrop, [&] { return handle.Measure("Single"); });
        EXPECT_TRUE(Eventually([&] { return handle.Measure("Dark"); })) << Text(handle.GetLastError());
    }
}

TEST_F(RemissionHandleTest, ServiceHandleReadsRecordsByIdAndMeasuresNothing)
{
    DeviceDriver::ServiceHandle service;
    EXPECT_FALSE(service.Measure("Single"));
    EXPECT_EQ(Text(service.GetLastError()), "Not supported!");
    OpenOnSim(service);
    EXPECT_TRUE(service.Lock());
    EXPECT_TRUE(service.Lock()) << "the lock is recursive for its thread";
    service.Unlock();
    service.Unlock();
    ConfigurationData request;
    request.SetU32(1211, 0);
    request.SetU32(10012, 99);
    request.SetFloat(2009, 0.0f);
    request.MarkAll(true);
    ASSERT_TRUE(service.GetConditions(request, true)) << Text(service.GetLastError());
    std::uint32_t gain = 99;
    request.GetU32(10012, gain);
    EXPECT_NE(gain, 99u) << "taken from the log data";
    float time = 0.0f;
    request.GetFloat(2009, time);
    EXPECT_GT(time, 0.0f) << "taken from the conditions";

    ConfigurationData unknown;
    unknown.SetU32(4321, 0);
    unknown.MarkAll(true);
    EXPECT_FALSE(service.GetConditions(unknown, false));
    EXPECT_EQ(Text(service.GetLastError()), "Data not found");
    DeviceDriver::LowLevelDriver::Bytes bytes;
    EXPECT_TRUE(service.ReadFile(1211, bytes));
    EXPECT_EQ(bytes.size(), 4u);
    EXPECT_FALSE(service.WriteFile(1211, bytes));
    EXPECT_EQ(Text(service.GetLastError()), "Function not available");
}

}
