#include "sim/FaultInjector.h"

#include <stdexcept>
#include <vector>

namespace OrbelSim {

FaultInjector::FaultInjector(Faults& faults, Eeprom& eeprom) : faults(faults), eeprom(eeprom) { }

void FaultInjector::Inject(const std::string& kind, unsigned count)
{
    if (count == 0) {
        throw std::invalid_argument("the count of a fault must be at least 1");
    }
    if (kind == "erase-eeprom") {
        eeprom.Erase();
    } else if (kind == "break-log-main") {
        BreakLogFile(10002);
    } else if (kind == "break-log-mirror") {
        BreakLogFile(11002);
    } else if (const auto transferFault = Faults::Parse(kind)) {
        faults.Arm(*transferFault, count);
    } else {
        throw std::invalid_argument("unknown fault '" + kind +
            "'; expected control-timeout, bulk-timeout, short-read, low-power, drop, "
            "erase-eeprom, break-log-main or break-log-mirror");
    }
}

void FaultInjector::BreakLogFile(std::uint16_t id)
{
    const auto range = eeprom.FileRange(id);
    if (!range || range->second < 4) {
        throw std::invalid_argument("the EEPROM holds no log file " + std::to_string(id) + " to break");
    }
    std::vector<std::uint8_t> word = eeprom.Read(range->first, 4);
    word[3] = static_cast<std::uint8_t>(word[3] + 1);
    eeprom.Write(range->first, word);
}

} // namespace OrbelSim
