#include "sim/Cable.h"

namespace OrbelSim {

void Cable::Drop()
{
    plugged = false;
    for (auto& [id, connection] : connections) {
        connection.gone = true;
        connection.pending.reset();
    }
}

std::optional<std::uint32_t> Cable::Connect()
{
    if (!plugged) {
        return std::nullopt;
    }
    const std::uint32_t id = nextConnection++;
    connections[id] = ConnectionState{};
    return id;
}

ConnectionState* Cable::Live(std::uint32_t connection)
{
    ConnectionState* found = Find(connection);
    return found && !found->gone && plugged ? found : nullptr;
}

ConnectionState* Cable::Find(std::uint32_t connection)
{
    const auto found = connections.find(connection);
    return found == connections.end() ? nullptr : &found->second;
}

std::vector<ConnectionState*> Cable::Present()
{
    std::vector<ConnectionState*> present;
    for (auto& [id, connection] : connections) {
        if (!connection.gone) {
            present.push_back(&connection);
        }
    }
    return present;
}

std::size_t Cable::PresentCount() const
{
    std::size_t count = 0;
    for (const auto& [id, connection] : connections) {
        count += connection.gone ? 0 : 1;
    }
    return count;
}

} // namespace OrbelSim
