#include "driver/platform/SystemTimeBase.h"

#include <cerrno>
#include <ctime>

namespace DeviceDriver {

namespace {

constexpr int64_t clockMicrosecondsPerSecond = 1000000;

}

SystemTimeBase::~SystemTimeBase() = default;

int64_t SystemTimeBase::MicrosecondsSince1970()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<int64_t>(now.tv_sec) * clockMicrosecondsPerSecond + now.tv_nsec / 1000;
}

void SystemTimeBase::Sleep(int64_t microseconds)
{
    if (microseconds <= 0) {
        return;
    }
    timespec remaining{};
    remaining.tv_sec = static_cast<time_t>(microseconds / clockMicrosecondsPerSecond);
    remaining.tv_nsec = static_cast<long>((microseconds % clockMicrosecondsPerSecond) * 1000);
    while (nanosleep(&remaining, &remaining) != 0 && errno == EINTR) {
    }
}

}
