#include "sim/Faults.h"

namespace OrbelSim {

std::optional<FaultKind> Faults::Parse(const std::string& name)
{
    if (name == "control-timeout") {
        return FaultKind::ControlTimeout;
    }
    if (name == "bulk-timeout") {
        return FaultKind::BulkTimeout;
    }
    if (name == "short-read") {
        return FaultKind::ShortRead;
    }
    if (name == "low-power") {
        return FaultKind::LowPower;
    }
    if (name == "drop") {
        return FaultKind::Drop;
    }
    return std::nullopt;
}

void Faults::Arm(FaultKind kind, unsigned count)
{
    switch (kind) {
    case FaultKind::ControlTimeout:
        controlTimeouts = count;
        break;
    case FaultKind::BulkTimeout:
        bulkTimeouts = count;
        break;
    case FaultKind::ShortRead:
        shortReads = count;
        break;
    case FaultKind::LowPower:
        lowPower = count;
        break;
    case FaultKind::Drop:
        dropCountdown = count;
        break;
    }
}

bool Faults::Take(FaultKind kind)
{
    unsigned* armed = nullptr;
    switch (kind) {
    case FaultKind::ControlTimeout:
        armed = &controlTimeouts;
        break;
    case FaultKind::BulkTimeout:
        armed = &bulkTimeouts;
        break;
    case FaultKind::ShortRead:
        armed = &shortReads;
        break;
    case FaultKind::LowPower:
        armed = &lowPower;
        break;
    case FaultKind::Drop:
        return false;
    }
    if (*armed == 0) {
        return false;
    }
    --*armed;
    return true;
}

bool Faults::CountTransferForDrop()
{
    if (dropCountdown == 0) {
        return false;
    }
    return --dropCountdown == 0;
}

std::string Faults::Json() const
{
    return "{\"control-timeout\":" + std::to_string(controlTimeouts) +
        ",\"bulk-timeout\":" + std::to_string(bulkTimeouts) + ",\"short-read\":" + std::to_string(shortReads) +
        ",\"low-power\":" + std::to_string(lowPower) + ",\"drop\":" + std::to_string(dropCountdown) + "}";
}

} // namespace OrbelSim
