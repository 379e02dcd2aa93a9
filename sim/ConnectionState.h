#pragma once
// What the instrument keeps for one opened connection of the host.

#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <vector>

#include "sim/PendingData.h"

namespace OrbelSim {

struct ConnectionState {
    std::optional<PendingData> pending;
    std::uint32_t writeAddress = 0;
    std::uint32_t writeRemaining = 0;
    std::deque<std::vector<std::uint8_t>> interrupts;
    bool interruptWaiting = false;
    std::optional<std::uint32_t> cancelledInterrupt;
    std::set<std::uint32_t> cancelledBulkReads;
    bool gone = false;
};

} // namespace OrbelSim
