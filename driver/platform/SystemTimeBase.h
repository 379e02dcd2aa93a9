#pragma once

#include <cstdint>

#include "driver/TimeBase.h"

namespace DeviceDriver {

// The machine's real-time clock and the thread's own sleep.
class SystemTimeBase : public TimeBase {
public:
    SystemTimeBase() = default;
    ~SystemTimeBase() override;

    int64_t MicrosecondsSince1970() override;
    // Sleeps the whole time, also when a signal wakes the thread early.
    void Sleep(int64_t microseconds) override;
};

}
