#pragma once

#include <cstdint>

#include "driver/TimeBase.h"
#include "utilities/SmartPointer.h"

namespace DeviceDriver {

// A clock that runs factor times as fast as the one below it, from the moment it is made:
// a sleep of 800 ms lasts 80 ms of the base at factor 10, and the clock shows 800 ms later.
// It matches a virtual instrument started with the same time scale.
class ScaledTimeBase : public TimeBase {
public:
    // A factor that is not above 0 raises ExceptionOutOfBound.
    ScaledTimeBase(const Utilities::SmartPointer<TimeBase>& base, double factor);
    ~ScaledTimeBase() override;

    int64_t MicrosecondsSince1970() override;
    void Sleep(int64_t microseconds) override;

private:
    Utilities::SmartPointer<TimeBase> base;
    double factor;
    int64_t origin;
};

}
