#pragma once
// The cable and the connections the host has opened over it. A connection outlives the cable
// that carried it (it is gone) until the host closes it.
// Not locked itself: the instrument calls it under its own lock only.

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "sim/ConnectionState.h"

namespace OrbelSim {

class Cable {
public:
    bool Plugged() const { return plugged; }
    void Plug() { plugged = true; }
    // Unplugs: every connection is gone and loses its data in waiting.
    void Drop();

    // A new connection; empty while unplugged.
    std::optional<std::uint32_t> Connect();
    void Disconnect(std::uint32_t connection) { connections.erase(connection); }
    // The connection while it can carry transfers; null otherwise.
    ConnectionState* Live(std::uint32_t connection);
    // The connection until the host closes it, gone or not; null after.
    ConnectionState* Find(std::uint32_t connection);
    std::vector<ConnectionState*> Present();
    std::size_t PresentCount() const;

private:
    bool plugged = true;
    std::uint32_t nextConnection = 1;
    std::map<std::uint32_t, ConnectionState> connections;
};

} // namespace OrbelSim
