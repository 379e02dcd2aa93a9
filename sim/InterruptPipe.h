#pragma once
// The interrupt pipe: a press of the key is queued for every connection and read from there; the
// key stays latched until a read takes a press or the cable comes back.
// Not locked itself: the instrument calls it under its own lock only.

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "sim/Cable.h"
#include "sim/TransferCounters.h"
#include "sim/TransferResult.h"

namespace OrbelSim {

class InterruptPipe {
public:
    using Lock = std::unique_lock<std::mutex>;

    InterruptPipe(Cable& cable, TransferCounters& counters);

    // Waits on `changed`, releasing `lock`, until a press, the cable goes, a cancel, or the
    // connection ends.
    TransferResult Read(
        Lock& lock, std::condition_variable& changed, std::uint32_t connection, std::uint32_t requestId);
    // False if there is no such connection.
    bool Cancel(std::uint32_t connection, std::uint32_t requestId);
    void Press();
    void ReleaseKey() { keyLatch = false; }
    bool KeyLatched() const { return keyLatch; }

private:
    Cable& cable;
    TransferCounters& counters;
    bool keyLatch = false;
};

} // namespace OrbelSim
