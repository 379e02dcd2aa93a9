#include "driver/platform/VirtualConnection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <sys/socket.h>
#include <unistd.h>

namespace DeviceDriver {

namespace {

// How much longer than the instrument's own time-out a bulk read waits for the instrument's answer.
constexpr std::uint64_t AnswerGraceMs = 2000;

}

VirtualConnection::VirtualConnection(const Utilities::String& path, int socket)
    : UsbConnection(path), socket(socket), reader([this] { ReadAnswers(); })
{
}

VirtualConnection::~VirtualConnection()
{
    ::shutdown(socket, SHUT_RDWR);
    reader.join();
    ::close(socket);
}

UsbResult VirtualConnection::ControlTransfer(const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length,
                                             std::uint32_t timeoutMs)
{
    if (request == nullptr || (length > 0 && payload == nullptr)) {
        return UsbResult::Failure(EINVAL);
    }
    if (length > Frame::MaxBody - ControlRequestSize) {
        return UsbResult::Failure(EMSGSIZE);
    }
    const bool in = request[0] == DirectionIn;
    std::vector<std::uint8_t> body(request, request + ControlRequestSize);
    if (!in) {
        body.insert(body.end(), payload, payload + length);
    }
    Answer answer;
    const UsbResult exchanged = Exchange({Frame::Kind::Control, 0, 0, length}, body, timeoutMs, answer);
    if (!exchanged.Succeeded()) {
        return exchanged;
    }
    return in ? Received(answer, payload, length) : Sent(answer, length);
}

UsbResult VirtualConnection::BulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    if (length > 0 && buffer == nullptr) {
        return UsbResult::Failure(EINVAL);
    }
    if (length > Frame::MaxBody) {
        return UsbResult::Failure(EMSGSIZE);
    }
    const std::uint64_t waitMs = timeoutMs == 0 ? 0 : timeoutMs + AnswerGraceMs;
    Answer answer;
    const UsbResult exchanged = Exchange({Frame::Kind::BulkRead, 0, timeoutMs, length}, {}, waitMs, answer);
    if (!exchanged.Succeeded()) {
        return exchanged;
    }
    return Received(answer, buffer, length);
}

UsbResult VirtualConnection::BulkWrite(const std::uint8_t* data, std::uint32_t length, std::uint32_t timeoutMs)
{
    if (length > 0 && data == nullptr) {
        return UsbResult::Failure(EINVAL);
    }
    if (length > Frame::MaxBody) {
        return UsbResult::Failure(EMSGSIZE);
    }
    const std::vector<std::uint8_t> body(data, data + length);
    Answer answer;
    const UsbResult exchanged = Exchange({Frame::Kind::BulkWrite, 0, 0, length}, body, timeoutMs, answer);
    if (!exchanged.Succeeded()) {
        return exchanged;
    }
    return Sent(answer, length);
}

UsbResult VirtualConnection::InterruptRead(std::uint8_t* buffer, std::uint32_t length)
{
    std::unique_lock<std::mutex> lock(stateMutex);
    while (true) {
        if (interruptAnswer) {
            Answer answer = std::move(*interruptAnswer);
            interruptAnswer.reset();
            return Received(answer, buffer, length);
        }
        if (interruptCancelled) {
            interruptCancelled = false;
            return UsbResult::Cancelled();
        }
        if (gone) {
            return UsbResult::NoDevice();
        }
        if (!interruptOutstanding) {
            SendInterruptRead(lock);
            continue;
        }
        changed.wait(lock);
    }
}

// The instrument still serves a cancelled control or bulk transfer; its answer is dropped.
void VirtualConnection::Cancel()
{
    std::unique_lock<std::mutex> lock(stateMutex);
    interruptCancelled = true;
    for (auto& [requestId, entry] : waiting) {
        entry.cancelled = true;
    }
    changed.notify_all();
    if (!interruptOutstanding) {
        return;
    }
    const Frame::Request cancel{Frame::Kind::Cancel, NextRequestId(), 0, 0};
    lock.unlock();
    Send(cancel, {});
}

// Succeeds when the instrument has answered; its status is then in `answer`. A wait of 0 has no limit.
UsbResult VirtualConnection::Exchange(Frame::Request request, const std::vector<std::uint8_t>& body,
                                      std::uint64_t waitMs, Answer& answer)
{
    {
        std::lock_guard<std::mutex> lock(stateMutex);
        if (gone) {
            return UsbResult::NoDevice();
        }
        request.requestId = NextRequestId();
        waiting[request.requestId] = Waiting{};
    }
    const bool sent = Send(request, body);
    std::unique_lock<std::mutex> lock(stateMutex);
    if (!sent) {
        MarkGone();
    }
    const auto settled = [&] {
        const Waiting& entry = waiting[request.requestId];
        return entry.answer || entry.cancelled || gone;
    };
    if (waitMs == 0) {
        changed.wait(lock, settled);
    } else {
        changed.wait_for(lock, std::chrono::milliseconds(waitMs), settled);
    }
    Waiting outcome = std::move(waiting[request.requestId]);
    waiting.erase(request.requestId);
    if (outcome.answer) {
        answer = std::move(*outcome.answer);
        return UsbResult::Success(0);
    }
    if (outcome.cancelled) {
        return UsbResult::Cancelled();
    }
    return gone ? UsbResult::NoDevice() : UsbResult::Timeout();
}

// With the state mutex held. Request id 0 is the instrument's answer to a frame it can't read.
std::uint32_t VirtualConnection::NextRequestId()
{
    if (++lastRequestId == 0) {
        ++lastRequestId;
    }
    return lastRequestId;
}

bool VirtualConnection::Send(const Frame::Request& request, const std::vector<std::uint8_t>& body)
{
    const std::vector<std::uint8_t> frame = Frame::Encode(request, body.data(), body.size());
    std::lock_guard<std::mutex> lock(sendMutex);
    std::size_t done = 0;
    while (done < frame.size()) {
        const ssize_t wrote = ::send(socket, frame.data() + done, frame.size() - done, MSG_NOSIGNAL);
        if (wrote < 0 && errno == EINTR) {
            continue;
        }
        if (wrote <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(wrote);
    }
    return true;
}

// With the state mutex held by `lock`; it is let go while the frame is sent.
void VirtualConnection::SendInterruptRead(std::unique_lock<std::mutex>& lock)
{
    const Frame::Request request{Frame::Kind::InterruptRead, NextRequestId(), 0, 0};
    interruptOutstanding = request.requestId;
    lock.unlock();
    const bool sent = Send(request, {});
    lock.lock();
    if (!sent) {
        MarkGone();
    }
}

void VirtualConnection::ReadAnswers()
{
    std::uint8_t header[Frame::AnswerHeaderSize];
    while (ReadExact(header, sizeof header)) {
        const auto decoded = Frame::DecodeAnswerHeader(header);
        if (!decoded) {
            break;
        }
        std::vector<std::uint8_t> body(decoded->bodyLength);
        if (!body.empty() && !ReadExact(body.data(), body.size())) {
            break;
        }
        File(*decoded, std::move(body));
    }
    std::lock_guard<std::mutex> lock(stateMutex);
    MarkGone();
}

bool VirtualConnection::ReadExact(std::uint8_t* data, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t got = ::recv(socket, data + done, size - done, 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(got);
    }
    return true;
}

// Hands an answer to whoever waits for it; an answer nobody waits for any more is dropped.
void VirtualConnection::File(const Frame::AnswerHeader& header, std::vector<std::uint8_t> body)
{
    std::lock_guard<std::mutex> lock(stateMutex);
    if (header.status == Frame::Status::NoDevice) {
        gone = true;
    }
    if (interruptOutstanding == header.requestId) {
        interruptOutstanding.reset();
        if (header.status != Frame::Status::Cancelled) {
            interruptAnswer = Answer{header.status, std::move(body)};
        }
    } else if (const auto found = waiting.find(header.requestId); found != waiting.end()) {
        found->second.answer = Answer{header.status, std::move(body)};
    }
    changed.notify_all();
}

// With the state mutex held.
void VirtualConnection::MarkGone()
{
    gone = true;
    changed.notify_all();
}

UsbResult VirtualConnection::Received(const Answer& answer, std::uint8_t* buffer, std::uint32_t capacity)
{
    if (answer.status != Frame::Status::Ok && answer.status != Frame::Status::Short) {
        return Refused(answer.status);
    }
    if (answer.body.size() > capacity) {
        return UsbResult::Failure(EOVERFLOW);
    }
    std::copy(answer.body.begin(), answer.body.end(), buffer);
    return UsbResult::Success(static_cast<std::uint32_t>(answer.body.size()));
}

UsbResult VirtualConnection::Sent(const Answer& answer, std::uint32_t length)
{
    return answer.status == Frame::Status::Ok ? UsbResult::Success(length) : Refused(answer.status);
}

UsbResult VirtualConnection::Refused(Frame::Status status)
{
    switch (status) {
        case Frame::Status::Stall:
            return UsbResult::Failure(EPIPE);
        case Frame::Status::Timeout:
            return UsbResult::Timeout();
        case Frame::Status::NoDevice:
            return UsbResult::NoDevice();
        case Frame::Status::Cancelled:
            return UsbResult::Cancelled();
        default:
            return UsbResult::Failure(EPROTO);
    }
}

}
