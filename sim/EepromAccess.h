#pragma once
// The EEPROM as the host reaches it: a read request makes the bytes ready on bulk-in, a write
// request announces the bytes that follow on bulk-out.
// Not locked itself: the instrument calls it under its own lock only.

#include <cstdint>
#include <vector>

#include "sim/ConnectionState.h"
#include "sim/Eeprom.h"
#include "sim/SimClock.h"
#include "sim/TransferCounters.h"
#include "sim/TransferResult.h"

namespace OrbelSim {

class EepromAccess {
public:
    EepromAccess(Eeprom& eeprom, TransferCounters& counters, const SimClock& clock);

    // `payload`: address (4), size (2).
    TransferResult StartRead(ConnectionState& connection, const std::vector<std::uint8_t>& payload);
    TransferResult StartWrite(ConnectionState& connection, const std::vector<std::uint8_t>& payload);
    // Bulk-out data of the write announced last.
    TransferResult Write(ConnectionState& connection, const std::vector<std::uint8_t>& data);

private:
    Eeprom& eeprom;
    TransferCounters& counters;
    const SimClock& clock;
};

} // namespace OrbelSim
