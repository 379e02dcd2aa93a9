#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

#include "driver/platform/UsbConnection.h"
#include "driver/platform/VirtualWireFrame.h"

namespace DeviceDriver {

// One connection to a virtual instrument over its socket. Requests go out as frames; the answers
// are read by the waiting threads themselves, one at a time: whoever waits and finds nobody
// reading becomes the reader, files the answers of the others for them, and hands the role on
// once its own answer is in. So an answer usually reaches the thread that asked for it without a
// hand-over between threads, and an interrupt read can wait beside the control and bulk
// transfers. Once the instrument is gone (unplugged, stopped, or the socket closed) every
// transfer fails with the no-device error.
class VirtualConnection : public UsbConnection {
public:
    // Takes over a connected socket.
    VirtualConnection(const Utilities::String& path, int socket);
    ~VirtualConnection() override;

    UsbResult ControlTransfer(
        const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult BulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult BulkWrite(const std::uint8_t* data, std::uint32_t length, std::uint32_t timeoutMs) override;
    ReadTicket SubmitBulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult AwaitBulkRead(ReadTicket ticket, std::uint32_t waitMs) override;
    void CancelBulkReads() override;
    UsbResult InterruptRead(std::uint8_t* buffer, std::uint32_t length) override;
    void Cancel() override;

    // One round trip: once it is back, the instrument has taken the connection as its own and
    // tells it of every key press. False if the instrument doesn't answer.
    bool Greet(std::uint32_t timeoutMs);

private:
    using Frame = VirtualWireFrame;
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    struct Answer {
        Frame::Status status = Frame::Status::Ok;
        std::vector<std::uint8_t> body;
    };

    struct Waiting {
        std::optional<Answer> answer;
        bool cancelled = false;
        // Refused before it was sent.
        std::optional<UsbResult> refusal;
        // A submitted bulk read: where its bytes go.
        std::uint8_t* buffer = nullptr;
        std::uint32_t capacity = 0;
        bool bulkRead = false;
        // The wait of the thread that collects the answer, while it waits.
        std::condition_variable* collector = nullptr;
    };

    UsbResult Exchange(
        Frame::Request request, const std::vector<std::uint8_t>& body, std::uint64_t waitMs, Answer& answer);
    std::uint32_t Post(Frame::Request request, const std::vector<std::uint8_t>& body, Waiting entry);
    UsbResult Collect(std::uint32_t requestId, std::uint64_t waitMs, Waiting& outcome);
    std::uint32_t NextRequestId();
    bool Send(const Frame::Request& request, const std::vector<std::uint8_t>& body);
    void SendInterruptRead(std::unique_lock<std::mutex>& lock);
    bool InterruptSettled() const;
    void ReadUntil(
        std::unique_lock<std::mutex>& lock, const std::function<bool()>& done, Deadline deadline, bool asListener);
    void AskListenerToYield();
    void HandOnReading();
    bool Receive();
    bool FileAnswers();
    void File(const Frame::AnswerHeader& header, std::vector<std::uint8_t> body);
    void MarkGone();
    void NotifyAll();
    void WakeCollector(const Waiting& entry);
    bool Settled(const Waiting& entry) const;
    static Deadline DeadlineAfter(std::uint64_t waitMs);
    static bool Passed(Deadline deadline);
    static int MsUntil(Deadline deadline);
    static UsbResult Received(const Answer& answer, std::uint8_t* buffer, std::uint32_t capacity);
    static UsbResult Sent(const Answer& answer, std::uint32_t length);
    static UsbResult Refused(Frame::Status status);

    const int socket;
    // Rouses the reader from its wait on the socket when it is to look up: a transfer is
    // cancelled, the instrument has gone, or a collector wants the role from the listener.
    const int waker;
    std::mutex sendMutex;
    std::mutex stateMutex;
    // An answer to a control or bulk transfer wakes the thread that collects it, and no other;
    // interrupts wake the listener only.
    std::condition_variable interruptChanged;
    std::map<std::uint32_t, Waiting> waiting;
    std::uint32_t lastRequestId = 0;
    bool gone = false;
    // Whether a thread holds the reader role, and whether that thread is the interrupt listener.
    bool reading = false;
    bool listenerReads = false;
    // A collector has asked the listener to give the role up.
    bool readerWanted = false;
    // Counts each transfer as it is posted and again as its collector comes for it, so that the
    // listener can tell a quiet spell: it takes the role only then, so that a run of transfers
    // doesn't wrest it from the listener time and again.
    std::uint64_t transferSteps = 0;
    // The instrument serves one interrupt read at a time. One stays outstanding there until it is
    // answered, even when the thread that asked for it has given up; the next read waits for it.
    std::optional<std::uint32_t> interruptOutstanding;
    std::optional<Answer> interruptAnswer;
    bool interruptCancelled = false;
    // Bytes received and not yet filed, used by the thread in the reader role alone.
    std::vector<std::uint8_t> inbox;
    std::size_t inboxStart = 0;
    std::size_t inboxEnd = 0;
    // The size of the frame that the first unfiled bytes begin, once its header is in.
    std::size_t inboxFrameSize = 0;
};

}
