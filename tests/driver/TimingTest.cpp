#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "diagnostics/String.h"
#include "driver/ManualTimeBase.h"
#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"
#include "driver/TimeStamp.h"
#include "driver/platform/Timing_PC.h"
#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/SmartPointer.h"

using DeviceDriver::ManualTimeBase;
using DeviceDriver::ScaledTimeBase;
using DeviceDriver::TimeBase;
using DeviceDriver::TimeStamp;
using DeviceDriver::Timing_PC;
using Utilities::ExceptionOutOfBound;
using Utilities::SmartPointer;

namespace {

constexpr int64_t microsecondsPerSecond = 1000000;

// Puts a manual clock in for the test and the process's own back afterwards.
class TimingTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        clock = new ManualTimeBase(start);
        previous = TimeBase::Replace(SmartPointer<TimeBase>(clock));
    }

    void TearDown() override { TimeBase::Replace(previous); }

    // 2023-11-14 22:13:20.250 UTC
    static constexpr int64_t start = 1700000000LL * microsecondsPerSecond + 250000;
    ManualTimeBase* clock = nullptr;
    SmartPointer<TimeBase> previous;
};

// Local time in UTC for the test, the machine's zone afterwards.
struct UtcZone {
    UtcZone()
    {
        setenv("TZ", "UTC0", 1);
        tzset();
    }

    ~UtcZone()
    {
        saved ? setenv("TZ", saved->c_str(), 1) : unsetenv("TZ");
        tzset();
    }

    const std::optional<std::string> saved =
        std::getenv("TZ") ? std::optional<std::string>(std::getenv("TZ")) : std::nullopt;
};

}

TEST_F(TimingTest, SleepMovesTheManualClockAtOnce)
{
    Timing_PC timing;
    const TimeStamp before = timing.Now();
    timing.Sleep(800);
    EXPECT_EQ(clock->SleptMicroseconds(), 800000);
    EXPECT_DOUBLE_EQ(timing.SecondsSince(before), 0.8);

    Timing_PC another;
    another.Sleep(300);
    EXPECT_DOUBLE_EQ(timing.SecondsSince(before), 1.1);
    EXPECT_EQ(timing.Time(), 1700000001u);

    clock->Advance(5 * microsecondsPerSecond);
    EXPECT_EQ(clock->SleptMicroseconds(), 1100000) << "advancing is no sleep";
    EXPECT_EQ(timing.Time(), 1700000006u);
}

TEST_F(TimingTest, SecondsSinceBorrowsFromTheSecondsForTheMilliseconds)
{
    Timing_PC timing;
    const TimeStamp then(2023, 11, 14, 22, 13, 19, 900, 1699999999);
    EXPECT_NEAR(timing.SecondsSince(then), 0.35, 1e-12);

    TimeStamp later = then;
    later.SetSeconds(1700000001);
    EXPECT_NEAR(timing.SecondsSince(later), -1.65, 1e-12);

    EXPECT_GT(timing.SecondsSince(TimeStamp()), 1.0) << "a stamp that was never set lies long ago";
}

TEST_F(TimingTest, NowGivesTheLocalTimeWithMilliseconds)
{
    UtcZone utc;
    const TimeStamp now = Timing_PC().Now();
    EXPECT_EQ(now.GetSeconds(), 1700000000u);
    EXPECT_EQ(std::string(now.GetValueString().CString()), "2023-11-14 22:13:20.250");

    clock->Advance(-2 * microsecondsPerSecond);
    clock->Advance(999);
    EXPECT_EQ(std::string(Timing_PC().Now().GetValueString().CString()), "2023-11-14 22:13:18.250");

    TimeBase::Replace(SmartPointer<TimeBase>(new ManualTimeBase(-1500)));
    const TimeStamp beforeEpoch = Timing_PC().Now();
    EXPECT_EQ(std::string(beforeEpoch.GetValueString().CString()), "1969-12-31 23:59:59.998");
}

TEST_F(TimingTest, AScaledClockRunsFasterThanItsBase)
{
    SmartPointer<TimeBase> base = TimeBase::Current();
    TimeBase::Replace(SmartPointer<TimeBase>(new ScaledTimeBase(base, 10.0)));
    Timing_PC timing;
    const TimeStamp before = timing.Now();

    timing.Sleep(800);
    EXPECT_EQ(clock->SleptMicroseconds(), 80000);
    clock->Advance(120000);
    EXPECT_DOUBLE_EQ(timing.SecondsSince(before), 2.0);

    EXPECT_EQ(FailureText<ExceptionOutOfBound>([&] { ScaledTimeBase(base, 0.0); }), "The time factor must be above 0");
}

TEST_F(TimingTest, ReplacingGivesBackThePreviousAndNullRestoresTheSystemClock)
{
    SmartPointer<TimeBase> manual = TimeBase::Replace(SmartPointer<TimeBase>());
    EXPECT_EQ(&*manual, clock);
    EXPECT_EQ(&*TimeBase::Current(), &*TimeBase::System());

    const uint32_t systemSeconds = Timing_PC().Time();
    const auto wallSeconds = static_cast<uint32_t>(std::time(nullptr));
    EXPECT_LE(systemSeconds > wallSeconds ? systemSeconds - wallSeconds : wallSeconds - systemSeconds, 2u);

    SmartPointer<TimeBase> system = TimeBase::System();
    const int64_t sleepStart = system->MicrosecondsSince1970();
    Timing_PC().Sleep(20);
    EXPECT_GE(system->MicrosecondsSince1970() - sleepStart, 20000) << "milliseconds, not less";
}
