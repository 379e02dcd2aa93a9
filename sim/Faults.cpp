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
        controlTimeouts_ = count;
        break;
    case FaultKind::BulkTimeout:
        bulkTimeouts_ = count;
        break;
    case FaultKind::ShortRead:
        shortReads_ = count;
        break;
    case FaultKind::LowPower:
        lowPower_ = count;
        break;
    case FaultKind::Drop:
        dropCountdown_ = count;
        break;
    }
}

bool Faults::Take(FaultKind kind)
{
    unsigned* armed = nullptr;
    switch (kind) {
    case FaultKind::ControlTimeout:
        armed = &controlTimeouts_;
        break;
    case FaultKind::BulkTimeout:
        armed = &bulkTimeouts_;
        break;
    case FaultKind::ShortRead:
        armed = &shortReads_;
        break;
    case FaultKind::LowPower:
        armed = &lowPower_;
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
    if (dropCountdown_ == 0) {
        return false;
    }
    return --dropCountdown_ == 0;
}

std::string Faults::Json() const
{
    return "{\"control-timeout\":" + std::to_string(controlTimeouts_) +
        ",\"bulk-timeout\":" + std::to_string(bulkTimeouts_) + ",\"short-read\":" + std::to_string(shortReads_) +
        ",\"low-power\":" + std::to_string(lowPower_) + ",\"drop\":" + std::to_string(dropCountdown_) + "}";
}

} // namespace OrbelSim
