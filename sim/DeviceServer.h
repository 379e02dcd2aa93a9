#pragma once
// The instrument's end of the cable: listens at <serial>.sock, and on the TCP port published in
// <serial>.port, while the instrument is plugged in, and keeps a DeviceConnection for each host
// connection.

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sim/DeviceConnection.h"
#include "sim/Instrument.h"
#include "sim/platform/UnixSocket.h"

namespace OrbelSim {

class DeviceServer {
public:
    DeviceServer(Instrument& instrument, std::string socketPath, std::string portFile);
    ~DeviceServer();
    DeviceServer(const DeviceServer&) = delete;
    DeviceServer& operator=(const DeviceServer&) = delete;

    // Plugs the cable in: the socket appears. Raises std::runtime_error with a text.
    void Listen();
    // Pulls the cable: the socket goes, and every connection ends once its answers are out.
    void StopListening();

private:
    void AcceptLoop(UnixListener& accepting);
    void ReapFinished();

    Instrument& instrument;
    std::string socketPath;
    std::string portFile;
    std::mutex mutex;
    std::unique_ptr<UnixListener> listener;
    std::thread acceptor;
    std::vector<std::unique_ptr<DeviceConnection>> connections;
};

} // namespace OrbelSim
