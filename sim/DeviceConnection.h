#pragma once
// One host connection on the instrument's socket: reads request frames (WireFrame.h), serves
// control and bulk transfers one after the other on a worker, interrupt reads on a thread of their
// own, cancels on the reading thread as they come, and writes the answers.

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "sim/Instrument.h"
#include "sim/platform/UnixSocket.h"

namespace OrbelSim {

class DeviceConnection {
public:
    DeviceConnection(Instrument& instrument, UnixSocket socket, std::uint32_t id);
    ~DeviceConnection();
    DeviceConnection(const DeviceConnection&) = delete;
    DeviceConnection& operator=(const DeviceConnection&) = delete;

    // Ends the connection from the instrument's side; pending answers still go out.
    void EndReading();
    bool Finished() const { return finished; }

private:
    struct Request {
        RequestHeader header;
        std::vector<std::uint8_t> body;
    };

    void ReadLoop();
    bool ReadRequest(Request& request);
    void Dispatch(Request request);
    void WorkLoop();
    TransferResult Serve(const Request& request);
    void StartInterruptRead(std::uint32_t requestId);
    void CancelInterruptRead(const RequestHeader& header);
    void CancelBulkReads(const RequestHeader& header);
    void ServeQueued(const Request& request);
    void Answer(const RequestHeader& request, const TransferResult& result);
    void Stall(const RequestHeader& request, const std::string& note);
    void Teardown();

    Instrument& instrument;
    UnixSocket socket;
    const std::uint32_t id;
    std::mutex writeMutex;
    std::mutex queueMutex;
    std::condition_variable queued;
    std::deque<Request> queue;
    bool closing = false;
    // Bulk reads received and not yet answered, guarded by queueMutex.
    std::set<std::uint32_t> unansweredBulkReads;
    // The interrupt read under way, guarded by queueMutex. Set by the reading thread before it reads
    // the next frame, so that a cancel right behind the read always finds it.
    std::optional<std::uint32_t> interruptOutstanding;
    std::thread interruptThread;
    std::thread worker;
    std::thread reader;
    std::atomic<bool> finished{false};
};

} // namespace OrbelSim
