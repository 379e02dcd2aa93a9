#include "driver/AutoResetEvent.h"

#include <chrono>

namespace DeviceDriver {

void AutoResetEvent::Set()
{
    std::lock_guard<std::mutex> held(guard);
    signalled = true;
    changed.notify_one();
}

void AutoResetEvent::Reset()
{
    std::lock_guard<std::mutex> held(guard);
    signalled = false;
}

bool AutoResetEvent::Wait(std::uint32_t timeoutMs)
{
    std::unique_lock<std::mutex> held(guard);
    if (!changed.wait_for(held, std::chrono::milliseconds(timeoutMs), [this] { return signalled; })) {
        return false;
    }
    signalled = false;
    return true;
}

}
