#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "driver/platform/UsbConnection.h"
#include "driver/platform/VirtualWireFrame.h"

namespace DeviceDriver {

// One connection to a virtual instrument over its socket. Requests go out as frames; a reader
// thread takes the answers and hands each to the thread that waits for its request id, so that an
// interrupt read can wait beside the control and bulk transfers. Once the instrument is gone
// (unplugged, stopped, or the socket closed) every transfer fails with the no-device error.
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
    void ReadAnswers();
    bool ReadExact(std::uint8_t* data, std::size_t size);
    bool Receive();
    void File(const Frame::AnswerHeader& header, std::vector<std::uint8_t> body);
    void MarkGone();
    void NotifyAll();
    void WakeCollector(const Waiting& entry);
    static UsbResult Received(const Answer& answer, std::uint8_t* buffer, std::uint32_t capacity);
    static UsbResult Sent(const Answer& answer, std::uint32_t length);
    static UsbResult Refused(Frame::Status status);

    const int socket;
    std::mutex sendMutex;
    std::mutex stateMutex;
    // An answer to a control or bulk transfer wakes the thread that collects it, and no other;
    // interrupts wake the listener only.
    std::condition_variable interruptChanged;
    std::map<std::uint32_t, Waiting> waiting;
    std::uint32_t lastRequestId = 0;
    bool gone = false;
    // The instrument serves one interrupt read at a time. One stays outstanding there until it is
    // answered, even when the thread that asked for it has given up; the next read waits for it.
    std::optional<std::uint32_t> interruptOutstanding;
    std::optional<Answer> interruptAnswer;
    bool interruptCancelled = false;
    // Bytes received and not yet read, used by the reader thread alone.
    std::vector<std::uint8_t> inbox;
    std::size_t inboxStart = 0;
    std::size_t inboxEnd = 0;
    std::thread reader;
};

}
