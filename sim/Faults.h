#pragma once
// Faults armed by `orbel-sim fault KIND --count N`:
//   control-timeout  the next N control transfers time out and are lost
//   bulk-timeout     the next N bulk transfers (in or out) time out; nothing is consumed
//   short-read       the next N bulk reads deliver half of their bytes and end the data in waiting
//   low-power        the next N MISC answers carry status 8 (not enough power)
//   drop             the cable goes during the N-th control or bulk transfer from now
// The EEPROM damages act at once and are handled by FaultInjector.

#include <optional>
#include <string>

namespace OrbelSim {

enum class FaultKind { ControlTimeout, BulkTimeout, ShortRead, LowPower, Drop };

class Faults {
public:
    static std::optional<FaultKind> Parse(const std::string& name);

    void Arm(FaultKind kind, unsigned count);
    // True, and one fewer armed, if the kind is armed. Drop is counted by CountTransferForDrop.
    bool Take(FaultKind kind);
    // Counts one control or bulk transfer; true when the cable goes during it.
    bool CountTransferForDrop();
    std::string Json() const;

private:
    unsigned controlTimeouts = 0;
    unsigned bulkTimeouts = 0;
    unsigned shortReads = 0;
    unsigned lowPower = 0;
    unsigned dropCountdown = 0;
};

} // namespace OrbelSim
