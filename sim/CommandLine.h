#pragma once
// The orbel-sim program's command line:
//   start [--serial N] [--uv-cut] [--noise on|off] [--time-scale F] [--foreground] [--eeprom FILE] [--verbose]
//   stop | unplug | plug | press | status [--serial N]
//   place TARGET [--serial N]
//   strip SPEC [--speed MM_PER_S] [--serial N]
//   fault KIND [--count N] [--serial N]
//   usb-run [--serial N] [--verbose] -- COMMAND [ARGS...]
// The time scale multiplies every duration of the instrument: 0.01 runs a hundred times faster.

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace OrbelSim {

class CommandLine {
public:
    static constexpr std::uint32_t defaultSerial = 1000001;

    // args: the arguments behind the program name. Answers the exit code: 0 done, 1 failed, 2 misused.
    static int Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
};

} // namespace OrbelSim
