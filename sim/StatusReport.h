#pragma once
// The instrument's state as one JSON object, for `orbel-sim status`.

#include <cstddef>
#include <cstdint>
#include <string>

#include "sim/Faults.h"
#include "sim/MeasurementScheduler.h"
#include "sim/TransferCounters.h"

namespace OrbelSim {

struct StatusFacts {
    std::uint32_t serial = 0;
    bool plugged = false;
    bool keyLatch = false;
    bool uvCut = false;
    bool noise = false;
    double timeScale = 1.0;
    bool lampOn = false;
    std::size_t connections = 0;
    int lastReset = -1;
};

class StatusReport {
public:
    static std::string Json(const StatusFacts& facts, const MeasurementScheduler& scheduler,
        const TransferCounters& counters, const Faults& faults);
};

} // namespace OrbelSim
