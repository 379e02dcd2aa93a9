#include "driver/platform/SystemTimeBase.h"

#include <windows.h>

#include <chrono>
#include <thread>

namespace DeviceDriver {

namespace {

// FILETIME counts 100 ns steps since 1601.
constexpr int64_t fileTimeOf1970 = 116444736000000000LL;
constexpr int64_t fileTimeStepsPerMicrosecond = 10;

}

SystemTimeBase::~SystemTimeBase() = default;

int64_t SystemTimeBase::MicrosecondsSince1970()
{
    FILETIME now{};
    ::GetSystemTimePreciseAsFileTime(&now);
    const int64_t steps = static_cast<int64_t>((static_cast<uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime);
    return (steps - fileTimeOf1970) / fileTimeStepsPerMicrosecond;
}

void SystemTimeBase::Sleep(int64_t microseconds)
{
    if (microseconds > 0) {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    }
}

}
