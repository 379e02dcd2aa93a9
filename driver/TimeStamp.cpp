#include "driver/TimeStamp.h"

#include <cstdio>

#include "diagnostics/String.h"

namespace DeviceDriver {

TimeStamp::TimeStamp() : TimeStamp(0, 0, 0, 0, 0, 0, 0, 0) { }

TimeStamp::TimeStamp(uint16_t year, uint8_t month, uint8_t day, uint8_t hour, uint8_t minute, uint8_t second,
    uint16_t milliseconds, uint32_t seconds)
    : year(year), month(month), day(day), hour(hour), minute(minute), second(second), milliseconds(milliseconds),
      seconds(seconds)
{
}

Diagnostics::String TimeStamp::GetValueString() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u.%03u", unsigned{year}, unsigned{month},
        unsigned{day}, unsigned{hour}, unsigned{minute}, unsigned{second}, unsigned{milliseconds});
    return Diagnostics::String(text);
}

}
