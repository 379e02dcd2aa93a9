#pragma once
// The bulk-in pipe: hands each connection the data its requests made ready, as they become ready,
// and ends the reads the host cancels.
// Not locked itself: the instrument calls it under its own lock only.

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "sim/Cable.h"
#include "sim/Faults.h"
#include "sim/SimClock.h"
#include "sim/TransferCounters.h"
#include "sim/TransferResult.h"

namespace OrbelSim {

class BulkPipe {
public:
    using Lock = std::unique_lock<std::mutex>;

    BulkPipe(Cable& cable, Faults& faults, TransferCounters& counters, const SimClock& clock);

    // Waits on `changed`, releasing `lock`, until the data are ready, the read is cancelled, the
    // cable goes or `timeoutMs` (0: never) passes.
    TransferResult Read(Lock& lock, std::condition_variable& changed, std::uint32_t connection, std::uint32_t length,
        std::uint32_t timeoutMs, std::uint32_t requestId);
    // True, and forgotten, if the host cancelled the read `requestId`.
    static bool TakeCancel(ConnectionState& connection, std::uint32_t requestId);
    // False if there is no such connection.
    bool Cancel(std::uint32_t connection, const std::vector<std::uint32_t>& requestIds);

private:
    TransferResult Deliver(ConnectionState& connection, std::uint32_t length);

    Cable& cable;
    Faults& faults;
    TransferCounters& counters;
    const SimClock& clock;
};

} // namespace OrbelSim
