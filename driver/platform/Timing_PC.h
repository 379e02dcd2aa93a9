#pragma once

#include <cstdint>

#include "driver/TimeStamp.h"
#include "driver/Timing.h"

namespace DeviceDriver {

// Timing on the process's current TimeBase, in the machine's local time. Cheap to make, and
// made wherever it is needed.
class Timing_PC : public Timing {
public:
    Timing_PC() = default;
    ~Timing_PC() override;

    void Sleep(uint32_t milliseconds) override;
    TimeStamp Now() override;
};

}
