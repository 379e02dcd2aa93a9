#include "driver/platform/Timing_PC.h"

#include <ctime>

#include "driver/TimeBase.h"

namespace DeviceDriver {

namespace {

constexpr int64_t microsecondsPerSecond = 1000000;
constexpr int64_t microsecondsPerMillisecond = 1000;

// Whole seconds rounded down, so that a moment before 1970 still has milliseconds 0 to 999.
int64_t WholeSeconds(int64_t microseconds)
{
    int64_t seconds = microseconds / microsecondsPerSecond;
    if (microseconds % microsecondsPerSecond < 0) {
        --seconds;
    }
    return seconds;
}

}

Timing_PC::~Timing_PC() = default;

void Timing_PC::Sleep(uint32_t milliseconds)
{
    TimeBase::Current()->Sleep(static_cast<int64_t>(milliseconds) * microsecondsPerMillisecond);
}

TimeStamp Timing_PC::Now()
{
    const int64_t microseconds = TimeBase::Current()->MicrosecondsSince1970();
    const int64_t seconds = WholeSeconds(microseconds);
    const int64_t milliseconds = (microseconds - seconds * microsecondsPerSecond) / microsecondsPerMillisecond;
    const time_t time = static_cast<time_t>(seconds);
    tm local{};
    localtime_r(&time, &local);
    return TimeStamp(static_cast<uint16_t>(local.tm_year + 1900), static_cast<uint8_t>(local.tm_mon + 1),
        static_cast<uint8_t>(local.tm_mday), static_cast<uint8_t>(local.tm_hour), static_cast<uint8_t>(local.tm_min),
        static_cast<uint8_t>(local.tm_sec), static_cast<uint16_t>(milliseconds), static_cast<uint32_t>(seconds));
}

}
