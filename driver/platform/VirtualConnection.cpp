#include "driver/platform/VirtualConnection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>

#include "driver/platform/SimSocket.h"

namespace DeviceDriver {

namespace {

// How much longer than the instrument's own time-out a bulk read waits for the instrument's answer.
constexpr std::uint64_t AnswerGraceMs = 2000;
// What one receive may take from the socket at least; a larger frame makes room for itself.
constexpr std::size_t InboxSize = 64 * 1024;
// How long the interrupt listener waits for a spell without transfers before it reads the socket
// itself; meanwhile the transfers' own readers file its answer. This bounds how late a key press
// is seen after the last transfer, and how often the listener wakes during a run of transfers.
constexpr auto ListenerPatience = std::chrono::milliseconds(5);

}

VirtualConnection::VirtualConnection(const Utilities::String& path, int socket)
    : UsbConnection(path), socket(socket), waker(SimSocket::OpenWaker()), inbox(InboxSize)
{
}

VirtualConnection::~VirtualConnection()
{
    SimSocket::Close(socket);
    SimSocket::CloseWaker(waker);
}

UsbResult VirtualConnection::ControlTransfer(
    const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length, std::uint32_t timeoutMs)
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
    return AwaitBulkRead(SubmitBulkRead(buffer, length, timeoutMs), timeoutMs);
}

// The instrument serves bulk reads in the order sent, so reads sent one behind the other are
// queued there and complete in that order.
VirtualConnection::ReadTicket VirtualConnection::SubmitBulkRead(
    std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    Waiting entry;
    entry.buffer = buffer;
    entry.capacity = length;
    entry.bulkRead = true;
    if (length > 0 && buffer == nullptr) {
        entry.refusal = UsbResult::Failure(EINVAL);
    } else if (length > Frame::MaxBody) {
        entry.refusal = UsbResult::Failure(EMSGSIZE);
    }
    return Post({Frame::Kind::BulkRead, 0, timeoutMs, length}, {}, std::move(entry));
}

// The instrument has its own time-out for the read; the answer is waited for a little longer.
UsbResult VirtualConnection::AwaitBulkRead(ReadTicket ticket, std::uint32_t waitMs)
{
    Waiting outcome;
    const UsbResult collected = Collect(ticket, waitMs == 0 ? 0 : waitMs + AnswerGraceMs, outcome);
    if (!collected.Succeeded()) {
        return collected;
    }
    return Received(*outcome.answer, outcome.buffer, outcome.capacity);
}

// The instrument is told too, so that it doesn't go on waiting for data nobody will take.
void VirtualConnection::CancelBulkReads()
{
    std::unique_lock<std::mutex> lock(stateMutex);
    bool anyUnanswered = false;
    for (auto& [requestId, entry] : waiting) {
        if (entry.bulkRead && !entry.answer && !entry.refusal) {
            entry.cancelled = true;
            anyUnanswered = true;
            WakeCollector(entry);
        }
    }
    if (!anyUnanswered || gone) {
        return;
    }
    if (reading) {
        SimSocket::Rouse(waker);
    }
    const Frame::Request cancel{Frame::Kind::CancelBulkReads, NextRequestId(), 0, 0};
    lock.unlock();
    Send(cancel, {});
}

// A cancel with nothing to end: answered at once, and it changes nothing at the instrument.
bool VirtualConnection::Greet(std::uint32_t timeoutMs)
{
    Answer answer;
    return Exchange({Frame::Kind::Cancel, 0, 0, 0}, {}, timeoutMs, answer).Succeeded() &&
        answer.status == Frame::Status::Ok;
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

// Reads the socket itself only after a quiet spell; it gives the role up at once when a
// transfer's collector asks for it.
UsbResult VirtualConnection::InterruptRead(std::uint8_t* buffer, std::uint32_t length)
{
    std::unique_lock<std::mutex> lock(stateMutex);
    bool quiet = true;
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
        if (quiet && !reading) {
            ReadUntil(
                lock, [this] { return InterruptSettled(); }, std::nullopt, true);
            HandOnReading();
            quiet = false;
            continue;
        }
        const std::uint64_t stepsBefore = transferSteps;
        interruptChanged.wait_for(lock, ListenerPatience);
        quiet = transferSteps == stepsBefore && !reading;
    }
}

// With the state mutex held.
bool VirtualConnection::InterruptSettled() const
{
    return interruptAnswer || interruptCancelled || !interruptOutstanding;
}

// The instrument still serves a cancelled control or bulk transfer; its answer is dropped.
void VirtualConnection::Cancel()
{
    std::unique_lock<std::mutex> lock(stateMutex);
    interruptCancelled = true;
    for (auto& [requestId, entry] : waiting) {
        entry.cancelled = true;
    }
    NotifyAll();
    if (!interruptOutstanding) {
        return;
    }
    const Frame::Request cancel{Frame::Kind::Cancel, NextRequestId(), 0, 0};
    lock.unlock();
    Send(cancel, {});
}

// Succeeds when the instrument has answered; its status is then in `answer`. A wait of 0 has no limit.
UsbResult VirtualConnection::Exchange(
    Frame::Request request, const std::vector<std::uint8_t>& body, std::uint64_t waitMs, Answer& answer)
{
    Waiting outcome;
    const UsbResult collected = Collect(Post(request, body, Waiting{}), waitMs, outcome);
    if (collected.Succeeded()) {
        answer = std::move(*outcome.answer);
    }
    return collected;
}

// Registers the request under a new id and sends it, unless it is refused already or the
// instrument has gone; Collect then tells so.
std::uint32_t VirtualConnection::Post(Frame::Request request, const std::vector<std::uint8_t>& body, Waiting entry)
{
    bool send = false;
    {
        std::lock_guard<std::mutex> lock(stateMutex);
        ++transferSteps;
        request.requestId = NextRequestId();
        send = !gone && !entry.refusal;
        waiting[request.requestId] = std::move(entry);
    }
    if (send && !Send(request, body)) {
        std::lock_guard<std::mutex> lock(stateMutex);
        MarkGone();
    }
    return request.requestId;
}

// Waits for the answer to a posted request and forgets the request. Succeeds when the instrument
// has answered; the answer is then in `outcome`. A wait of 0 has no limit. While another thread
// reads, the collector sleeps until that thread hands it its answer or the role.
UsbResult VirtualConnection::Collect(std::uint32_t requestId, std::uint64_t waitMs, Waiting& outcome)
{
    std::condition_variable settledHere;
    const Deadline deadline = DeadlineAfter(waitMs);
    std::unique_lock<std::mutex> lock(stateMutex);
    ++transferSteps;
    Waiting& entry = waiting[requestId];
    entry.collector = &settledHere;
    const auto settled = [&] { return Settled(entry); };
    while (!settled() && !Passed(deadline)) {
        if (!reading) {
            ReadUntil(lock, settled, deadline, false);
            continue;
        }
        AskListenerToYield();
        if (deadline) {
            settledHere.wait_until(lock, *deadline);
        } else {
            settledHere.wait(lock);
        }
    }
    outcome = std::move(entry);
    outcome.collector = nullptr;
    waiting.erase(requestId);
    if (!reading) {
        HandOnReading();
    }
    if (outcome.refusal) {
        return *outcome.refusal;
    }
    if (outcome.answer) {
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
        const long wrote = SimSocket::Send(socket, frame.data() + done, frame.size() - done);
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

// With the state mutex held by `lock`, which is let go while the socket is waited on and read.
// Takes the reader role and files every answer that comes until `done`, the deadline, the
// instrument's going, or (for the listener) a collector that wants the role.
void VirtualConnection::ReadUntil(
    std::unique_lock<std::mutex>& lock, const std::function<bool()>& done, Deadline deadline, bool asListener)
{
    reading = true;
    listenerReads = asListener;
    while (!done() && !gone && !(asListener && readerWanted) && !Passed(deadline)) {
        lock.unlock();
        const bool received =
            SimSocket::Wait(socket, waker, MsUntil(deadline)) != SimSocket::Readiness::Readable || Receive();
        lock.lock();
        if (!received || !FileAnswers()) {
            MarkGone();
        }
    }
    reading = false;
    listenerReads = false;
    readerWanted = false;
}

// With the state mutex held.
void VirtualConnection::AskListenerToYield()
{
    if (listenerReads && !readerWanted) {
        readerWanted = true;
        SimSocket::Rouse(waker);
    }
}

// With the state mutex held: the role goes to a collector still waiting, if any. Otherwise the
// listener takes it after its quiet spell.
void VirtualConnection::HandOnReading()
{
    for (const auto& [requestId, entry] : waiting) {
        if (entry.collector != nullptr && !Settled(entry)) {
            entry.collector->notify_one();
            return;
        }
    }
}

// Appends what the socket has at hand: a header and its body, and often the next frame, come in
// one call. The unfiled bytes move to the front first, with room for the whole frame they begin.
bool VirtualConnection::Receive()
{
    std::copy(inbox.begin() + static_cast<std::ptrdiff_t>(inboxStart),
        inbox.begin() + static_cast<std::ptrdiff_t>(inboxEnd), inbox.begin());
    inboxEnd -= inboxStart;
    inboxStart = 0;
    if (inbox.size() < inboxFrameSize) {
        inbox.resize(inboxFrameSize);
    }
    const long got = SimSocket::Receive(socket, inbox.data() + inboxEnd, inbox.size() - inboxEnd);
    if (got <= 0) {
        return false;
    }
    inboxEnd += static_cast<std::size_t>(got);
    return true;
}

// With the state mutex held. Files every whole frame received; false when the stream can't be
// followed any more.
bool VirtualConnection::FileAnswers()
{
    while (inboxEnd - inboxStart >= Frame::AnswerHeaderSize) {
        const std::uint8_t* start = inbox.data() + inboxStart;
        const auto header = Frame::DecodeAnswerHeader(start);
        if (!header) {
            return false;
        }
        inboxFrameSize = Frame::AnswerHeaderSize + header->bodyLength;
        if (inboxEnd - inboxStart < inboxFrameSize) {
            return true;
        }
        File(*header, std::vector<std::uint8_t>(start + Frame::AnswerHeaderSize, start + inboxFrameSize));
        inboxStart += inboxFrameSize;
        inboxFrameSize = 0;
    }
    return true;
}

// With the state mutex held. Hands an answer to whoever waits for it; an answer nobody waits for
// any more is dropped.
void VirtualConnection::File(const Frame::AnswerHeader& header, std::vector<std::uint8_t> body)
{
    if (header.status == Frame::Status::NoDevice) {
        MarkGone();
    }
    if (interruptOutstanding == header.requestId) {
        interruptOutstanding.reset();
        if (header.status != Frame::Status::Cancelled) {
            interruptAnswer = Answer{header.status, std::move(body)};
        }
        interruptChanged.notify_all();
    } else if (const auto found = waiting.find(header.requestId); found != waiting.end()) {
        found->second.answer = Answer{header.status, std::move(body)};
        WakeCollector(found->second);
    }
}

// With the state mutex held.
void VirtualConnection::MarkGone()
{
    gone = true;
    NotifyAll();
}

// With the state mutex held.
void VirtualConnection::NotifyAll()
{
    for (const auto& [requestId, entry] : waiting) {
        WakeCollector(entry);
    }
    interruptChanged.notify_all();
    if (reading) {
        SimSocket::Rouse(waker);
    }
}

// With the state mutex held, which the collector needs before it can leave its wait.
void VirtualConnection::WakeCollector(const Waiting& entry)
{
    if (entry.collector != nullptr) {
        entry.collector->notify_one();
    }
}

// With the state mutex held.
bool VirtualConnection::Settled(const Waiting& entry) const
{
    return entry.answer || entry.cancelled || entry.refusal || gone;
}

// Empty for a wait of 0, which has no limit.
VirtualConnection::Deadline VirtualConnection::DeadlineAfter(std::uint64_t waitMs)
{
    if (waitMs == 0) {
        return std::nullopt;
    }
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(waitMs);
}

bool VirtualConnection::Passed(Deadline deadline)
{
    return deadline && std::chrono::steady_clock::now() >= *deadline;
}

// Rounded up, so that a wait doesn't end just short of the deadline; -1 without one.
int VirtualConnection::MsUntil(Deadline deadline)
{
    if (!deadline) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
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
