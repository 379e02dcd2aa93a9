#include "driver/ManualTimeBase.h"

namespace DeviceDriver {

ManualTimeBase::ManualTimeBase(int64_t startMicroseconds) : now(startMicroseconds), slept(0) { }

ManualTimeBase::~ManualTimeBase() = default;

void ManualTimeBase::Sleep(int64_t microseconds)
{
    if (microseconds > 0) {
        now += microseconds;
        slept += microseconds;
    }
}

}
