#include "sim/DeviceConnection.h"

#include "sim/SimLog.h"
#include "sim/UsbDescriptors.h"

namespace OrbelSim {

namespace {

const char* StatusName(TransferStatus status)
{
    switch (status) {
    case TransferStatus::Ok:
        return "ok";
    case TransferStatus::Stall:
        return "stall";
    case TransferStatus::Timeout:
        return "timeout";
    case TransferStatus::Short:
        return "short";
    case TransferStatus::NoDevice:
        return "no device";
    case TransferStatus::Cancelled:
        return "cancelled";
    }
    return "?";
}

std::string Describe(const RequestHeader& header, const std::vector<std::uint8_t>& body)
{
    switch (static_cast<TransferKind>(header.kind)) {
    case TransferKind::Control:
        return "control " + (body.size() > 4 ? "request " + std::to_string(body[4]) + " " : std::string()) + "length " +
            std::to_string(header.transferLength);
    case TransferKind::BulkRead:
        return "bulk read " + std::to_string(header.transferLength);
    case TransferKind::BulkWrite:
        return "bulk write " + std::to_string(header.transferLength);
    case TransferKind::InterruptRead:
        return "interrupt read";
    case TransferKind::Cancel:
        return "cancel";
    case TransferKind::CancelBulkReads:
        return "cancel bulk reads";
    case TransferKind::Descriptors:
        return "descriptors";
    }
    return "kind " + std::to_string(header.kind);
}

} // namespace

DeviceConnection::DeviceConnection(Instrument& instrument, UnixSocket socket, std::uint32_t id)
    : instrument(instrument), socket(std::move(socket)), id(id)
{
    SimLog::Write("connection " + std::to_string(id) + " opened");
    worker = std::thread([this] { WorkLoop(); });
    reader = std::thread([this] { ReadLoop(); });
}

DeviceConnection::~DeviceConnection()
{
    EndReading();
    reader.join();
}

void DeviceConnection::EndReading()
{
    socket.ShutdownRead();
}

bool DeviceConnection::ReadRequest(Request& request)
{
    std::uint8_t header[WireFrame::requestHeaderSize];
    if (!socket.ReadExact(header, sizeof header)) {
        return false;
    }
    const auto decoded = WireFrame::DecodeRequestHeader(header);
    if (!decoded) {
        Stall(RequestHeader{header[5], 0, 0, 0, 0}, "malformed frame: wrong magic, version or body length; closing");
        return false;
    }
    request.header = *decoded;
    request.body.resize(decoded->bodyLength);
    return request.body.empty() || socket.ReadExact(request.body.data(), request.body.size());
}

void DeviceConnection::ReadLoop()
{
    Request request;
    while (ReadRequest(request)) {
        Dispatch(std::move(request));
        request = Request{};
    }
    Teardown();
}

void DeviceConnection::Dispatch(Request request)
{
    const RequestHeader& header = request.header;
    const std::size_t bodySize = request.body.size();
    switch (static_cast<TransferKind>(header.kind)) {
    case TransferKind::InterruptRead:
        if (bodySize != 0) {
            return Stall(header, "interrupt read with a body");
        }
        return StartInterruptRead(header.requestId);
    case TransferKind::Cancel:
        return CancelInterruptRead(header);
    case TransferKind::CancelBulkReads:
        return CancelBulkReads(header);
    case TransferKind::Descriptors:
        return Answer(header, {TransferStatus::Ok, UsbDescriptors::Bytes(), {}});
    case TransferKind::Control: {
        const bool out = bodySize > 0 && request.body[0] == 0;
        const std::size_t expected = WireFrame::controlRequestSize + (out ? header.transferLength : 0);
        if (bodySize < WireFrame::controlRequestSize || bodySize != expected) {
            return Stall(header, "control frame whose body doesn't match its length");
        }
        break;
    }
    case TransferKind::BulkRead:
        if (bodySize != 0) {
            return Stall(header, "bulk read with a body");
        }
        break;
    case TransferKind::BulkWrite:
        if (bodySize != header.transferLength) {
            return Stall(header, "bulk write whose body doesn't match its length");
        }
        break;
    default:
        return Stall(header, "unknown transfer kind " + std::to_string(header.kind));
    }
    std::lock_guard<std::mutex> lock(queueMutex);
    if (static_cast<TransferKind>(header.kind) == TransferKind::BulkRead) {
        unansweredBulkReads.insert(header.requestId);
    }
    queue.push_back(std::move(request));
    queued.notify_one();
}

void DeviceConnection::WorkLoop()
{
    while (true) {
        Request request;
        {
            std::unique_lock<std::mutex> lock(queueMutex);
            queued.wait(lock, [this] { return closing || !queue.empty(); });
            if (queue.empty()) {
                return;
            }
            request = std::move(queue.front());
            queue.pop_front();
        }
        ServeQueued(request);
    }
}

void DeviceConnection::ServeQueued(const Request& request)
{
    if (SimLog::Verbose()) {
        SimLog::Write("connection " + std::to_string(id) + " request " + std::to_string(request.header.requestId) +
            ": " + Describe(request.header, request.body));
    }
    const TransferResult result = Serve(request);
    {
        std::lock_guard<std::mutex> lock(queueMutex);
        unansweredBulkReads.erase(request.header.requestId);
    }
    Answer(request.header, result);
}

TransferResult DeviceConnection::Serve(const Request& request)
{
    const RequestHeader& header = request.header;
    switch (static_cast<TransferKind>(header.kind)) {
    case TransferKind::Control: {
        const std::vector<std::uint8_t> setup(
            request.body.begin(), request.body.begin() + WireFrame::controlRequestSize);
        const std::vector<std::uint8_t> payload(
            request.body.begin() + WireFrame::controlRequestSize, request.body.end());
        return instrument.Control(id, setup, payload, header.transferLength);
    }
    case TransferKind::BulkRead:
        return instrument.BulkRead(id, header.transferLength, header.timeoutMs, header.requestId);
    default:
        return instrument.BulkWrite(id, request.body);
    }
}

void DeviceConnection::StartInterruptRead(std::uint32_t requestId)
{
    const RequestHeader header{static_cast<std::uint8_t>(TransferKind::InterruptRead), requestId, 0, 0, 0};
    {
        std::lock_guard<std::mutex> lock(queueMutex);
        if (interruptOutstanding) {
            return Stall(header, "an interrupt read is outstanding already");
        }
        interruptOutstanding = requestId;
    }
    if (interruptThread.joinable()) {
        interruptThread.join();
    }
    interruptThread = std::thread([this, header] {
        const TransferResult result = instrument.InterruptRead(id, header.requestId);
        {
            std::lock_guard<std::mutex> lock(queueMutex);
            interruptOutstanding.reset();
        }
        Answer(header, result);
    });
}

// The instrument is told which read to end: its thread may not have begun to wait yet.
void DeviceConnection::CancelInterruptRead(const RequestHeader& header)
{
    {
        std::lock_guard<std::mutex> lock(queueMutex);
        if (interruptOutstanding) {
            instrument.CancelInterrupt(id, *interruptOutstanding);
        }
    }
    Answer(header, {});
}

// Reads still waiting their turn are served later, and end at once as cancelled.
void DeviceConnection::CancelBulkReads(const RequestHeader& header)
{
    {
        std::lock_guard<std::mutex> lock(queueMutex);
        if (!unansweredBulkReads.empty()) {
            instrument.CancelBulkReads(id, {unansweredBulkReads.begin(), unansweredBulkReads.end()});
        }
    }
    Answer(header, {});
}

void DeviceConnection::Stall(const RequestHeader& request, const std::string& note)
{
    Answer(request, {TransferStatus::Stall, {}, note});
}

void DeviceConnection::Answer(const RequestHeader& request, const TransferResult& result)
{
    if (SimLog::Verbose()) {
        SimLog::Write("connection " + std::to_string(id) + " request " + std::to_string(request.requestId) + ": " +
            Describe(request, {}) + " -> " + StatusName(result.status) + " " + std::to_string(result.data.size()) +
            " bytes" + (result.note.empty() ? "" : " (" + result.note + ")"));
    }
    const std::vector<std::uint8_t> frame =
        WireFrame::EncodeAnswer({request.kind, result.status, request.requestId, 0}, result.data);
    std::lock_guard<std::mutex> lock(writeMutex);
    socket.WriteAll(frame.data(), frame.size());
    if (result.status == TransferStatus::NoDevice) {
        socket.ShutdownBoth();
    }
}

void DeviceConnection::Teardown()
{
    instrument.Disconnect(id);
    {
        std::lock_guard<std::mutex> lock(queueMutex);
        closing = true;
        queued.notify_all();
    }
    worker.join();
    if (interruptThread.joinable()) {
        interruptThread.join();
    }
    {
        std::lock_guard<std::mutex> lock(writeMutex);
        socket.ShutdownBoth();
    }
    SimLog::Write("connection " + std::to_string(id) + " closed");
    finished = true;
}

} // namespace OrbelSim
