#include "sim/TransferCounters.h"

namespace OrbelSim {

TransferResult TransferCounters::Refuse(TransferStatus status, const std::string& note)
{
    if (status == TransferStatus::Stall) {
        ++stalls;
    }
    if (status == TransferStatus::Timeout) {
        ++timeouts;
    }
    return {status, {}, note};
}

} // namespace OrbelSim
