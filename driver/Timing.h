#pragma once

#include <cstdint>

#include "driver/TimeStamp.h"

namespace DeviceDriver {

// The driver's only clock and sleeper. What it reads and how long it sleeps follow the
// process's TimeBase, which tests may replace.
class Timing {
public:
    Timing() = default;
    Timing(const Timing&) = default;
    Timing& operator=(const Timing&) = default;
    virtual ~Timing();

    virtual void Sleep(uint32_t milliseconds) = 0;
    // Local time, milliseconds included.
    virtual TimeStamp Now() = 0;

    // The seconds from then to now, milliseconds included.
    double SecondsSince(const TimeStamp& then);
    // Seconds since 1970.
    uint32_t Time();
};

}
