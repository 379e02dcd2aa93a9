#pragma once
// What one transfer of the host ends with.

#include <cstdint>
#include <string>
#include <vector>

#include "sim/WireFrame.h"

namespace OrbelSim {

struct TransferResult {
    TransferStatus status = TransferStatus::Ok;
    std::vector<std::uint8_t> data;
    // Why a transfer was refused or failed, for the verbose log.
    std::string note;
};

} // namespace OrbelSim
