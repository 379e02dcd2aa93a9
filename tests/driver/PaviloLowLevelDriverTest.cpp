#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "driver/ConfigurationData.h"
#include "driver/PaviloLowLevelDriver.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
#include "tests/driver/PaviloSimFixture.h"
#include "tests/driver/VectorLists.h"
#include "utilities/Exception.h"
#include "utilities/ResolveAs.h"

namespace DeviceDriverTest {

using DeviceDriver::ConfigurationData;
using DeviceDriver::LowLevelDriver;
using DeviceDriver::PaviloLowLevelDriver;
using DeviceDriver::SensorData;
using DeviceDriver::SensorDataFifo;
using Utilities::SmartPointer;

namespace {

class EventCounter : public Utilities::Observer<long> {
public:
    void Update(Utilities::Observee<long>*, long value) override
    {
        if (value == 0) {
            interrupts.fetch_add(1);
        }
    }
    std::atomic<int> interrupts{0};
};

}

class PaviloLowLevelDriverTest : public PaviloSimFixture {
protected:
    PaviloLowLevelDriverTest() : driver(new PaviloLowLevelDriver) { }

    ~PaviloLowLevelDriverTest() override
    {
        if (driver->IsOpen()) {
            driver->Close();
        }
    }

    void Open() { ASSERT_TRUE(driver->Open(sim.Path().c_str())); }

    // A new driver, whose log data hold nothing but what it reads from the instrument.
    void OpenAnew()
    {
        driver = SmartPointer<PaviloLowLevelDriver>(new PaviloLowLevelDriver);
        Open();
    }

    // The instrument's present conditions with these measure parameters sent to it.
    ConfigurationData Conditions(float integrationTime, std::uint32_t count, bool dark)
    {
        ConfigurationData conditions("PhysicalCondition");
        driver->GetConditions(conditions);
        conditions.SetFloat(2009, integrationTime);
        conditions.SetFloat(2001, 0.0f);
        conditions.SetU32(2010, count);
        conditions.SetU32(2000, dark ? 1 : 0);
        conditions.SetU32(2002, 1);
        conditions.SetU32(2003, 0);
        conditions.SetU32(2008, 0);
        conditions.Mark(2009, true);
        driver->SetConditions(conditions);
        return conditions;
    }

    std::uint32_t LogU32(std::uint16_t id)
    {
        ConfigurationData log("LogData");
        driver->GetLogData(log);
        std::uint32_t value = 0;
        log.GetU32(id, value);
        return value;
    }

    float LogFloat(std::uint16_t id)
    {
        ConfigurationData log("LogData");
        driver->GetLogData(log);
        float value = 0.0f;
        log.GetFloat(id, value);
        return value;
    }

    std::uint64_t LastReset() const { return Counter("last_reset"); }

    SmartPointer<PaviloLowLevelDriver> driver;
};

TEST_F(PaviloLowLevelDriverTest, OpenWaitsForPowerAndEndsWithResetOfOpening)
{
    sim.Command({"fault", "low-power", "--count", "5"});
    Open();
    EXPECT_EQ(LastReset(), 31u) << "status 8 that clears at the fifth poll passes";
    EXPECT_TRUE(driver->IsOpen());
    EXPECT_TRUE(driver->Close());
    EXPECT_FALSE(driver->IsOpen());

    sim.Command({"fault", "low-power", "--count", "21"});
    EXPECT_EQ(OutOfBoundText([&] { driver->Open(sim.Path().c_str()); }), "Not enough power available");
    EXPECT_EQ(LastReset(), 1u);
    EXPECT_FALSE(driver->IsOpen()) << "a connection that failed to open isn't left half open";

    EXPECT_EQ(OutOfBoundText([&] { driver->Open("sim:999"); }), "Unable to open the device");
}

TEST_F(PaviloLowLevelDriverTest, ConditionsGoToTheWireInTicksCountsAndFlagsAndComeBack)
{
    Open();
    ConfigurationData conditions = Conditions(0.02f, 300, false);
    EXPECT_EQ(Counter("integration_ticks"), 294u);
    EXPECT_EQ(Counter("count"), 256u);
    EXPECT_EQ(Counter("flags"), 4u);
    std::uint32_t count = 0;
    conditions.GetU32(2010, count);
    EXPECT_EQ(count, 256u) << "the cap holds in the map too";
    EXPECT_TRUE(conditions.MarkedIds().Size() == 0);

    conditions.SetU32(2008, 1);
    conditions.SetU32(9189, 1000);
    conditions.SetU32(2000, 1);
    conditions.Mark(2008, true);
    driver->SetConditions(conditions);
    EXPECT_EQ(Counter("count"), 1000u) << "the replacement count isn't cut to 256";
    EXPECT_EQ(Counter("flags"), 7u);

    conditions.SetU32(9189, 70000);
    conditions.Mark(2008, true);
    driver->SetConditions(conditions);
    EXPECT_EQ(Counter("count"), 65535u) << "cut to the width of the wire field";

    conditions.SetU32(9189, 0xFFFFFFFFu);
    conditions.Mark(2008, true);
    driver->SetConditions(conditions);
    EXPECT_EQ(Counter("count"), 256u) << "a replacement of -1 leaves the count of item 2010";

    conditions.SetU32(2011, 1);
    conditions.Mark(2011, true);
    driver->SetConditions(conditions);
    EXPECT_EQ(conditions.MarkedIds().Size(), 0u) << "an item of no group only loses its mark";

    Conditions(0.02f, 3, true);
    ConfigurationData read("PhysicalCondition");
    driver->GetConditions(read);
    EXPECT_EQ(read.MarkedIds().Size(), 0u);
    float integration = 0.0f;
    read.GetFloat(2009, integration);
    EXPECT_FLOAT_EQ(integration, 294 * 6.8e-5f);
    for (const auto& [id, expected] :
        {std::pair<std::uint16_t, std::uint32_t>{2010, 3}, {2000, 1}, {2002, 1}, {2020, 0xF000}, {2004, 0}}) {
        std::uint32_t value = 99;
        read.GetU32(id, value);
        EXPECT_EQ(value, expected) << id;
    }
}

TEST_F(PaviloLowLevelDriverTest, MeasureMakesRowsAndBooksTheLog)
{
    Open();
    const std::uint32_t lampBefore = LogU32(10002);
    const std::uint32_t darkBefore = LogU32(10005);
    const float secondsBefore = LogFloat(10004);

    ConfigurationData dark = Conditions(0.0068f, 2, true);
    SensorData sensor;
    driver->Measure(sensor, dark);
    ASSERT_EQ(sensor.Raw().Size(), 2u);
    for (unsigned long row = 0; row < 2; ++row) {
        ASSERT_EQ(sensor.Raw()[row].Size(), 128u);
        EXPECT_EQ(sensor.Raw()[row][127], sensor.Raw()[row][126]);
        EXPECT_GT(sensor.Raw()[row][10], 0);
    }
    EXPECT_EQ(sensor.Gain(), 1u);
    EXPECT_EQ(LogU32(10005), darkBefore + 1);
    EXPECT_EQ(LogFloat(10004), secondsBefore) << "the lamp was never on";
    EXPECT_EQ(LogU32(10002), lampBefore);

    ConfigurationData lamp = Conditions(0.0204f, 4, false);
    driver->Measure(sensor, lamp);
    EXPECT_EQ(sensor.Raw().Size(), 4u);
    EXPECT_EQ(LogU32(10002), lampBefore + 1);
    EXPECT_EQ(LogU32(10005), darkBefore + 1);
    EXPECT_NEAR(LogFloat(10004), secondsBefore + 4 * 0.0204f, 1e-5);
    EXPECT_FLOAT_EQ(LogFloat(10001), 0.0204f);
}

TEST_F(PaviloLowLevelDriverTest, PixelWordsAboveTheWrapThresholdAreNegative)
{
    std::uint8_t block[256] = {};
    block[0] = 0xFF;
    block[1] = 0xFF;
    block[2] = 0xF0;
    block[252] = 0x12;
    block[253] = 0x34;
    block[254] = 0x55;
    const Utilities::Vector<long> pixels = PaviloLowLevelDriver::PixelsOf(block, 0xF000);
    EXPECT_EQ(pixels[0], -1);
    EXPECT_EQ(pixels[1], 0xF000) << "a word equal to the threshold stays positive";
    EXPECT_EQ(pixels[126], 0x1234);
    EXPECT_EQ(pixels[127], 0x1234) << "word 127 is read by nobody";
}

TEST_F(PaviloLowLevelDriverTest, AMeasurementThatFailsOnceLeavesOnlyTheReset)
{
    Open();
    ConfigurationData conditions = Conditions(0.0068f, 2, false);
    const std::uint32_t lampBefore = LogU32(10002);
    const std::uint64_t resetsBefore = Counter("resets");
    sim.Command({"fault", "bulk-timeout", "--count", "1"});
    SensorData sensor;
    driver->Measure(sensor, conditions);
    EXPECT_EQ(sensor.Raw().Size(), 2u);
    EXPECT_EQ(Counter("resets"), resetsBefore + 1);
    EXPECT_EQ(LastReset(), 7u);
    EXPECT_EQ(LogU32(10002), lampBefore + 1) << "booked once";

    sim.Command({"fault", "bulk-timeout", "--count", "2"});
    const std::string text = OutOfBoundText([&] { driver->Measure(sensor, conditions); });
    EXPECT_EQ(text.rfind("Measurement Error: PaviloFunctionality_PC::MeasureRequest ", 0), 0u) << text;
    EXPECT_GT(text.size(), std::string("Measurement Error: PaviloFunctionality_PC::MeasureRequest ").size());
    EXPECT_EQ(Counter("resets"), resetsBefore + 3);
    EXPECT_EQ(LastReset(), 7u);
    EXPECT_EQ(LogU32(10002), lampBefore + 1) << "a failed measurement books nothing";
}

TEST_F(PaviloLowLevelDriverTest, AScanFillsTheFifoRowByRowAndIsBooked)
{
    Open();
    DrawStripOf(23);
    ConfigurationData conditions = Conditions(0.0068f, 1, false);
    conditions.SetU32(2008, 1);
    conditions.Mark(2008, true);
    driver->SetConditions(conditions);
    const std::uint32_t scansBefore = LogU32(10003);
    const float secondsBefore = LogFloat(10004);

    SensorDataFifo fifo;
    driver->MeasureScan(fifo, conditions);
    EXPECT_TRUE(fifo.IsFinished());
    EXPECT_EQ(fifo.Size(), 23u);
    SensorData row;
    ASSERT_TRUE(fifo.Pop(row));
    ASSERT_EQ(row.Raw().Size(), 1u);
    EXPECT_EQ(row.Raw()[0][127], row.Raw()[0][126]);
    EXPECT_EQ(LogU32(10003), scansBefore + 1);
    EXPECT_NEAR(LogFloat(10004), secondsBefore + 23 * 0.0068f, 1e-4);

    DrawStripOf(23);
    SensorDataFifo failed;
    sim.Command({"fault", "bulk-timeout"});
    const std::string text = OutOfBoundText([&] { driver->MeasureScan(failed, conditions); });
    EXPECT_EQ(text.rfind("Measurement Error: PaviloFunctionality_PC::StartScan ", 0), 0u) << text;
    EXPECT_FALSE(failed.IsFinished());
    EXPECT_EQ(LastReset(), 7u);
    EXPECT_EQ(LogU32(10003), scansBefore + 1) << "scans are not retried and a failed one isn't booked";
}

// The replacement count sizes the packets of the strip as it sizes the instrument's.
TEST_F(PaviloLowLevelDriverTest, AScanTakesTheReplacementCount)
{
    Open();
    for (const std::uint32_t count : {1u, 3u, 25u}) {
        ConfigurationData conditions = Conditions(0.0068f, 10, false);
        conditions.SetU32(2008, 1);
        conditions.SetU32(9189, count);
        conditions.Mark(2008, true);
        conditions.Mark(9189, true);
        driver->SetConditions(conditions);
        DrawStripOf(23);
        SensorDataFifo fifo;
        driver->MeasureScan(fifo, conditions);
        EXPECT_EQ(fifo.Size(), (23 + count - 1) / count * count) << count;
    }
}

// A strip cut off after some of its packets came in leaves none of them to the next strip.
TEST_F(PaviloLowLevelDriverTest, AFailedScanLeavesNothingForTheNext)
{
    const auto scanOf = [this](std::uint32_t measurements, SensorDataFifo& fifo) {
        ConfigurationData conditions = Conditions(0.0068f, 1, false);
        conditions.SetU32(2008, 1);
        conditions.Mark(2008, true);
        driver->SetConditions(conditions);
        DrawStripOf(measurements);
        driver->MeasureScan(fifo, conditions);
    };
    Open();
    // The cable goes at one transfer or another of the strip.
    for (const char* transfer : {"3", "5", "8", "13"}) {
        sim.Command({"fault", "drop", "--count", transfer});
        SensorDataFifo failed;
        OutOfBoundText([&] { scanOf(230, failed); });
        sim.Command({"plug"});
        Open();
        SensorDataFifo fifo;
        scanOf(23, fifo);
        EXPECT_EQ(fifo.Size(), 23u) << "cut at transfer " << transfer;
    }
}

TEST_F(PaviloLowLevelDriverTest, LogCountersSurviveARestartOfTheInstrument)
{
    const std::string file = sim.Directory() + "/eeprom.bin";
    sim.Command({"stop"});
    sim.Command({"start", "--noise", "off", "--time-scale", "0", "--eeprom", file});
    Open();
    ConfigurationData conditions = Conditions(0.0068f, 1, false);
    SensorData sensor;
    driver->Measure(sensor, conditions);
    driver->Measure(sensor, conditions);
    const std::uint32_t kept = LogU32(10002);
    EXPECT_GT(kept, 1u);
    EXPECT_TRUE(driver->Close());
    sim.Command({"stop"});
    sim.Command({"start", "--noise", "off", "--time-scale", "0", "--eeprom", file});
    OpenAnew();
    EXPECT_EQ(LogU32(10002), kept);
}

TEST_F(PaviloLowLevelDriverTest, StatesAnswerAndRefuse)
{
    Open();
    EXPECT_EQ(driver->GetState(30002), 1);
    EXPECT_EQ(driver->GetState(30006), static_cast<long>(OrbelTest::SimInstrument::DefaultSerial));
    EXPECT_EQ(driver->GetState(12345), -1);

    driver->SetState(30005, 2);
    EXPECT_EQ(driver->GetState(30005), 2);
    driver->SetState(30004, 0);
    EXPECT_EQ(driver->GetState(30004), 0);
    ConfigurationData conditions = Conditions(0.0068f, 1, false);
    SensorData sensor;
    driver->Measure(sensor, conditions);
    EXPECT_EQ(driver->GetState(30004), 1);
    driver->SetState(30003, -60);
    EXPECT_NEAR(driver->GetState(30003), 60, 1);

    for (std::uint16_t id : {30001, 30002, 30006, 29999}) {
        EXPECT_EQ(OutOfBoundText([&] { driver->SetState(id, 0); }), "Unable to set requested state") << id;
    }
    EXPECT_EQ(OutOfBoundText([&] { driver->WriteFile(); }), "Function not available");
    EXPECT_EQ(driver->ReadFile(1211)->size(), 4u);
    EXPECT_EQ(OutOfBoundText([&] { driver->ReadFile(7777); }),
        "EEPROM Error (ID 7777): File with ID 7777 not found in EEPROM");

    EXPECT_TRUE(driver->Close());
    EXPECT_EQ(driver->GetState(30005), 0) << "closing clears the filter state";
}

TEST_F(PaviloLowLevelDriverTest, HandlesOfOneConnectionShareOneDriver)
{
    const std::string name = "PaviloLowLevelDriver:" + sim.Path();
    SmartPointer<LowLevelDriver> first = Utilities::ResolveAs<LowLevelDriver>(name);
    SmartPointer<LowLevelDriver> second = Utilities::ResolveAs<LowLevelDriver>(name);
    ASSERT_FALSE(first.IsNull());
    EXPECT_EQ(first.operator->(), second.operator->());
    EXPECT_EQ(first->name().ToStdString(), "PaviloLowLevelDriver");

    EventCounter one;
    EventCounter two;
    EXPECT_TRUE(first->Attach(sim.Path().c_str(), &one));
    EXPECT_TRUE(second->Attach(sim.Path().c_str(), &two));
    EXPECT_TRUE(first->IsOpen());
    sim.Command({"press"});
    EXPECT_TRUE(Eventually([&] { return one.interrupts.load() > 0 && two.interrupts.load() > 0; }));
    EXPECT_TRUE(first->Detach(&one));
    EXPECT_TRUE(second->IsOpen()) << "open while a handle observes it";
    EXPECT_TRUE(second->Detach(&two));
    EXPECT_FALSE(first->IsOpen());
}

}
