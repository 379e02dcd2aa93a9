#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace DeviceDriver {

// A signal that one waiter consumes: Set wakes one Wait, or the next one if none is waiting,
// and a Wait that returns true leaves the event clear again.
class AutoResetEvent {
public:
    AutoResetEvent() = default;
    AutoResetEvent(const AutoResetEvent&) = delete;
    AutoResetEvent& operator=(const AutoResetEvent&) = delete;

    void Set();
    void Reset();
    // True when the event came within timeoutMs.
    bool Wait(std::uint32_t timeoutMs);

private:
    std::mutex guard;
    std::condition_variable changed;
    bool signalled = false;
};

}
