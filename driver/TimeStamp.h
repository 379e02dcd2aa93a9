#pragma once

#include <cstdint>

namespace Diagnostics {
class String;
}

namespace DeviceDriver {

// A moment as Timing gives it: local date and time to the millisecond, and the seconds since
// 1970 that durations are reckoned in.
class TimeStamp {
public:
    TimeStamp();
    TimeStamp(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute, uint8_t second,
        uint16_t milliseconds, uint32_t seconds);

    uint16_t Year() const { return year; }
    uint8_t Month() const { return month; }
    uint8_t Day() const { return day; }
    uint8_t Hour() const { return hour; }
    uint8_t Minute() const { return minute; }
    uint8_t Second() const { return second; }
    uint16_t Milliseconds() const { return milliseconds; }

    uint32_t GetSeconds() const { return seconds; }
    void SetSeconds(uint32_t value) { seconds = value; }

    // "YYYY-MM-DD hh:mm:ss.mmm"
    Diagnostics::String GetValueString() const;

private:
    uint16_t year;
    uint8_t month;
    uint8_t day;
    uint8_t hour;
    uint8_t minute;
    uint8_t second;
    uint16_t milliseconds;
    uint32_t seconds;
};

}
