#pragma once
// How many transfers of each kind the instrument has seen, for the status.
// Not locked itself: the instrument calls it under its own lock only.

#include <cstdint>
#include <string>

#include "sim/TransferResult.h"

namespace OrbelSim {

struct TransferCounters {
    std::uint64_t control = 0;
    std::uint64_t bulkIn = 0;
    std::uint64_t bulkInCancelled = 0;
    std::uint64_t bulkOut = 0;
    std::uint64_t interrupts = 0;
    std::uint64_t stalls = 0;
    std::uint64_t timeouts = 0;
    std::uint64_t presses = 0;
    std::uint64_t eepromBytesWritten = 0;
    std::uint64_t resets = 0;

    // The transfer refused with `status`, counted if it is a stall or a timeout.
    TransferResult Refuse(TransferStatus status, const std::string& note);
};

} // namespace OrbelSim
