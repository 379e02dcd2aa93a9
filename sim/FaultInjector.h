#pragma once
// Arms a fault by its name (see Faults.h), or damages the EEPROM at once: erase-eeprom,
// break-log-main, break-log-mirror.
// Not locked itself: the instrument calls it under its own lock only.

#include <cstdint>
#include <string>

#include "sim/Eeprom.h"
#include "sim/Faults.h"

namespace OrbelSim {

class FaultInjector {
public:
    FaultInjector(Faults& faults, Eeprom& eeprom);

    // Raises std::invalid_argument with a text for an unknown kind or a count of 0.
    void Inject(const std::string& kind, unsigned count);

private:
    void BreakLogFile(std::uint16_t id);

    Faults& faults;
    Eeprom& eeprom;
};

} // namespace OrbelSim
