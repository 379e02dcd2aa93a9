#pragma once
// Bulk-in data that a request has made ready for one connection, prefix by prefix.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "sim/SimClock.h"

namespace OrbelSim {

struct PendingData {
    std::vector<std::uint8_t> bytes;
    // (end of a prefix, when that prefix is ready), in rising order.
    std::vector<std::pair<std::size_t, SimClock::Clock::time_point>> readiness;
    std::size_t delivered = 0;
    bool scan = false;
};

} // namespace OrbelSim
