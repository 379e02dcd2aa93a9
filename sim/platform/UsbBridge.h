#pragma once
// Starts the helper that shows a running virtual instrument as a USB device through umockdev and
// runs a command beside it (orbel-sim-usb.py). The helper lies beside the orbel-sim program in a
// build, and in the installation's libexec folder once installed.

#include <cstdint>
#include <string>
#include <vector>

namespace OrbelSim {

class UsbBridge {
public:
    // Replaces this process by the helper; returns only when that couldn't be done, with the reason.
    static std::string Exec(
        const std::string& directory, std::uint32_t serial, bool verbose, const std::vector<std::string>& command);
};

} // namespace OrbelSim
