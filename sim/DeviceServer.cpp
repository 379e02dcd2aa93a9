#include "sim/DeviceServer.h"

#include <algorithm>

#include "sim/SimLog.h"

namespace OrbelSim {

DeviceServer::DeviceServer(Instrument& instrument, std::string socketPath)
    : instrument_(instrument), socketPath_(std::move(socketPath))
{
}

DeviceServer::~DeviceServer()
{
    StopListening();
    std::vector<std::unique_ptr<DeviceConnection>> connections;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        connections = std::move(connections_);
    }
    connections.clear();
}

void DeviceServer::Listen()
{
    std::lock_guard<std::mutex> lock(mutex_);
    if (listener_) {
        return;
    }
    listener_ = std::make_unique<UnixListener>(socketPath_);
    acceptor_ = std::thread([this, listener = listener_.get()] { AcceptLoop(*listener); });
    SimLog::Write("listening at " + socketPath_);
}

void DeviceServer::StopListening()
{
    std::unique_ptr<UnixListener> listener;
    std::thread acceptor;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        listener = std::move(listener_);
        acceptor = std::move(acceptor_);
        for (const auto& connection : connections_) {
            connection->EndReading();
        }
    }
    if (!listener) {
        return;
    }
    listener->Wake();
    acceptor.join();
    SimLog::Write("stopped listening at " + socketPath_);
}

void DeviceServer::AcceptLoop(UnixListener& listener)
{
    while (auto socket = listener.Accept()) {
        const auto id = instrument_.Connect();
        if (!id) {
            continue;
        }
        std::lock_guard<std::mutex> lock(mutex_);
        ReapFinished();
        connections_.push_back(std::make_unique<DeviceConnection>(instrument_, std::move(*socket), *id));
    }
}

void DeviceServer::ReapFinished()
{
    connections_.erase(std::remove_if(connections_.begin(), connections_.end(),
                           [](const std::unique_ptr<DeviceConnection>& c) { return c->Finished(); }),
        connections_.end());
}

} // namespace OrbelSim
