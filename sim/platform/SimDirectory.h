#pragma once
// Where virtual instruments publish their sockets: $ORBEL_SIM_DIR, else $XDG_RUNTIME_DIR/orbel-sim,
// else /tmp/orbel-sim-<uid>. <serial>.sock is the instrument's cable (WireFrame.h), <serial>.port
// the decimal TCP port on 127.0.0.1 of the same cable for hosts without Unix sockets, <serial>.ctl
// the orbel-sim program's control socket (CommandChannel.h), <serial>.log its verbose log.

#include <cstdint>
#include <string>

namespace OrbelSim {

class SimDirectory {
public:
    static std::string Resolve();
    // Makes the directory (mode 0700) if it doesn't exist; raises std::runtime_error with a text.
    static void Ensure(const std::string& directory);
    static std::string DeviceSocket(const std::string& directory, std::uint32_t serial);
    static std::string DevicePortFile(const std::string& directory, std::uint32_t serial);
    static std::string ControlSocket(const std::string& directory, std::uint32_t serial);
    static std::string LogFile(const std::string& directory, std::uint32_t serial);
    static bool Exists(const std::string& path);
    static void Remove(const std::string& path);
};

} // namespace OrbelSim
