#include "sim/DeviceServer.h"

#include <algorithm>

#include "sim/SimLog.h"

namespace OrbelSim {

DeviceServer::DeviceServer(Instrument& instrument, std::string socketPath, std::string portFile)
    : instrument(instrument), socketPath(std::move(socketPath)), portFile(std::move(portFile))
{
}

DeviceServer::~DeviceServer()
{
    StopListening();
    std::vector<std::unique_ptr<DeviceConnection>> closing;
    {
        std::lock_guard<std::mutex> lock(mutex);
        closing = std::move(connections);
    }
    closing.clear();
}

void DeviceServer::Listen()
{
    std::lock_guard<std::mutex> lock(mutex);
    if (listener) {
        return;
    }
    listener = std::make_unique<UnixListener>(socketPath, portFile);
    acceptor = std::thread([this, accepting = listener.get()] { AcceptLoop(*accepting); });
    SimLog::Write("listening at " + socketPath);
}

void DeviceServer::StopListening()
{
    std::unique_ptr<UnixListener> stopping;
    std::thread accepting;
    {
        std::lock_guard<std::mutex> lock(mutex);
        stopping = std::move(listener);
        accepting = std::move(acceptor);
        for (const auto& connection : connections) {
            connection->EndReading();
        }
    }
    if (!stopping) {
        return;
    }
    stopping->Wake();
    accepting.join();
    SimLog::Write("stopped listening at " + socketPath);
}

void DeviceServer::AcceptLoop(UnixListener& accepting)
{
    while (auto socket = accepting.Accept()) {
        const auto id = instrument.Connect();
        if (!id) {
            continue;
        }
        std::lock_guard<std::mutex> lock(mutex);
        ReapFinished();
        connections.push_back(std::make_unique<DeviceConnection>(instrument, std::move(*socket), *id));
    }
}

void DeviceServer::ReapFinished()
{
    connections.erase(std::remove_if(connections.begin(), connections.end(),
                          [](const std::unique_ptr<DeviceConnection>& c) { return c->Finished(); }),
        connections.end());
}

} // namespace OrbelSim
