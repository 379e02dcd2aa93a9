#include "driver/PaviloUSBDevice.h"

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <thread>

#include "diagnostics/DebugTraceItem.h"
#include "driver/PaviloFunctionalityByte.h"
#include "driver/platform/RaisedThreadPriority.h"
#include "driver/platform/StripStartSignal.h"
#include "driver/platform/Timing_PC.h"
#include "driver/platform/UsbPlatforms.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/MutexLock.h"
#include "utilities/Thread.h"

namespace DeviceDriver {

namespace {

constexpr std::uint32_t listenerStartMs = 2000;
constexpr std::uint32_t shutdownAttempts = 4;
constexpr std::uint32_t shutdownStepMs = 1000;
constexpr std::uint32_t notifierWaitMs = 2000;
constexpr std::uint32_t controlTimeoutMs = 2000;
constexpr std::uint32_t transferGraceMs = 5000;
constexpr std::uint32_t latchWaitMs = 10;
constexpr std::uint32_t interruptPacketSize = 8;
constexpr std::uint32_t packetsPerBlock = 10;
constexpr std::uint32_t largestBlock = 65535;
constexpr std::uint32_t stripStartPauseMs = 500;

// A failure that can't go further is at least kept in the trace.
void TraceEndedFailure(const char* function, const char* what)
{
    Diagnostics::DebugTraceItem trace("DeviceDriver", "PaviloUSBDevice", function);
    trace.AddParameter(what);
    trace.LogCall();
}

Utilities::String Failure(const char* what, const UsbResult& result)
{
    return Utilities::String(what) + PaviloUSBDevice::PlatformErrorText(result);
}

}

// The three blocks of a strip: two being read while the third is cut into packets. However the
// strip ends, the reads still under way are cancelled and waited for before their blocks go.
class PaviloUSBDevice::StripReads {
public:
    StripReads(UsbConnection& connection, std::uint32_t blockSize, std::uint32_t waitMs)
        : connection(connection), blockSize(blockSize), waitMs(waitMs)
    {
        for (std::vector<std::uint8_t>& block : blocks) {
            block.resize(blockSize);
        }
    }

    ~StripReads()
    {
        connection.CancelBulkReads();
        for (const Read& read : underWay) {
            connection.AwaitBulkRead(read.ticket, waitMs);
        }
    }

    StripReads(const StripReads&) = delete;
    StripReads& operator=(const StripReads&) = delete;

    // Queues a read into the block that is neither being read nor processed.
    void QueueNext()
    {
        std::size_t free = 0;
        while (free == processing || IsUnderWay(free)) {
            ++free;
        }
        underWay.push_back({connection.SubmitBulkRead(blocks[free].data(), blockSize, waitMs), free});
    }

    // Waits for the older read; its block becomes the one to process.
    UsbResult AwaitOldest()
    {
        const Read oldest = underWay.front();
        underWay.pop_front();
        processing = oldest.block;
        return connection.AwaitBulkRead(oldest.ticket, waitMs);
    }

    const std::uint8_t* Processing() const { return blocks[processing].data(); }

private:
    struct Read {
        UsbConnection::ReadTicket ticket;
        std::size_t block;
    };

    bool IsUnderWay(std::size_t block) const
    {
        return std::any_of(underWay.begin(), underWay.end(), [block](const Read& read) { return read.block == block; });
    }

    UsbConnection& connection;
    const std::uint32_t blockSize;
    const std::uint32_t waitMs;
    std::array<std::vector<std::uint8_t>, 3> blocks;
    std::deque<Read> underWay;
    std::size_t processing = blocks.size();
};

// Waits on the interrupt pipe from Open until Shutdown or the loss of the instrument.
class PaviloUSBDevice::Listener : public Utilities::Thread {
public:
    Listener(PaviloUSBDevice& device, std::shared_ptr<UsbConnection> pipes)
        : Thread("PaviloUSBDevice::Listener"), device(device), pipes(std::move(pipes))
    {
    }
    ~Listener() override { Stop(0); }

    std::uint32_t Run() override { return device.Listen(pipes); }
    // Ends the wait on the interrupt pipe, also one that hasn't begun yet.
    void CancelPipes() { pipes->Cancel(); }

private:
    PaviloUSBDevice& device;
    const std::shared_ptr<UsbConnection> pipes;
};

// Tells the owner of one event, so that the listener never waits for the observers.
class PaviloUSBDevice::Notifier : public Utilities::Thread {
public:
    Notifier(PaviloUSBDevice& device, long value)
        : Thread("PaviloUSBDevice::Notifier"), device(device), value(value), finished(false)
    {
    }
    ~Notifier() override { Stop(0); }

    std::uint32_t Run() override
    {
        device.NotifyObservers(value, this);
        return 0;
    }

    bool IsFinished() const { return finished; }
    void SetFinished() { finished = true; }

private:
    PaviloUSBDevice& device;
    const long value;
    bool finished;
};

PaviloUSBDevice::PaviloUSBDevice(PaviloFunctionalityByte* owner, const Utilities::String& address)
    : address(address), owner(owner), deviceMutex(CleanPath(address)), shutdownRequested(false), open(false),
      lost(false), listening(false), runningNotifiers(0)
{
    if (!Open()) {
        throw Utilities::ExceptionOutOfBound("PaviloUSBDevice open failed !");
    }
}

PaviloUSBDevice::~PaviloUSBDevice()
{
    Shutdown();
    while (HasRunningNotifiers()) {
        notifiersDone.Wait(notifierWaitMs);
    }
    notifiers.clear();
    listener.reset();
}

UsbPlatform& PaviloUSBDevice::Platform()
{
    static UsbPlatforms platform(UsbInstrumentIds::Configured(), UsbInstrumentIds::VirtualInstrumentsWanted());
    return platform;
}

Utilities::String PaviloUSBDevice::CleanPath(const Utilities::String& path)
{
    std::string cleaned = path.ToStdString();
    std::erase_if(
        cleaned, [](char c) { return c == '\\' || c == '?' || c == '#' || c == '&' || c == '{' || c == '}'; });
    return Utilities::String(cleaned);
}

Utilities::String PaviloUSBDevice::PlatformErrorText(const UsbResult& result)
{
    return Utilities::String(" (") + UsbResult::ErrorWord() + " Error (" +
        Utilities::String(static_cast<unsigned long>(result.Error())) + ") : " + result.Text() + " )";
}

bool PaviloUSBDevice::IsOpen()
{
    return open;
}

bool PaviloUSBDevice::IsLost()
{
    return lost;
}

// With the device mutex held. The transfer that finds the instrument gone closes the device at
// once: the listener may learn of it later, and an open device would count as connected.
void PaviloUSBDevice::NoteLoss(const UsbResult& result)
{
    if (result.IsNoDevice()) {
        lost = true;
        open = false;
    }
}

// A listener left from connections closed by hand is stopped first; whatever fails on the way
// stops the listener again, so that nothing of a failed opening keeps running.
bool PaviloUSBDevice::Open()
{
    if (IsOpen()) {
        return true;
    }
    Shutdown();
    bool opened = false;
    try {
        opened = OpenPipesAndListener();
    } catch (...) {
        // The caller learns of the failure from the answer false; the trace keeps that it was raised.
        TraceEndedFailure("Open", "opening raised a failure; the device stays closed");
    }
    if (!opened) {
        Shutdown();
        CloseConnections();
    }
    return opened;
}

bool PaviloUSBDevice::OpenPipesAndListener()
{
    const Utilities::MutexLock held(deviceMutex);
    open = false;
    if (listening) {
        return false;
    }
    std::unique_ptr<UsbConnection> opened;
    if (!Platform().Open(address, opened).Succeeded()) {
        return false;
    }
    connection = std::move(opened);
    if (!StartListener()) {
        return false;
    }
    interruptLatch = std::make_unique<InterruptLatch>(Utilities::String("Halvorn_Pavilo_") + CleanPath(address));
    open = true;
    lost = false;
    return true;
}

// An earlier listener has ended by now; dropping it waits for the last steps of its run.
bool PaviloUSBDevice::StartListener()
{
    shutdownRequested = false;
    listenerStarted.Reset();
    listenerEnded.Reset();
    listener = std::make_unique<Listener>(*this, connection);
    listening = true;
    try {
        listener->Start();
    } catch (...) {
        listening = false;
        throw;
    }
    return listenerStarted.Wait(listenerStartMs);
}

std::uint32_t PaviloUSBDevice::Listen(std::shared_ptr<UsbConnection> pipes)
{
    listenerStarted.Set();
    std::uint8_t packet[interruptPacketSize];
    bool listen = true;
    while (listen) {
        const UsbResult result = pipes->InterruptRead(packet, interruptPacketSize);
        const Utilities::MutexLock held(deviceMutex);
        listen = HandleInterruptPacket(result);
    }
    const Utilities::MutexLock held(deviceMutex);
    CloseConnections();
    listening = false;
    listenerEnded.Set();
    return 0;
}

// With the device mutex held. False when the listener is to stop: a packet of no bytes means
// that the instrument has gone, or that Shutdown has cancelled the wait.
bool PaviloUSBDevice::HandleInterruptPacket(const UsbResult& result)
{
    if (result.Succeeded() && result.Transferred() != 0) {
        if (interruptLatch) {
            interruptLatch->Take(latchWaitMs);
        }
        InterruptOccurred(0);
        return true;
    }
    if (!shutdownRequested) {
        lost = true;
        // Closed first, so that an observer told of the loss finds the device closed.
        CloseConnections();
        InterruptOccurred(1);
    }
    return false;
}

void PaviloUSBDevice::InterruptOccurred(long value)
{
    const Utilities::MutexLock held(deviceMutex);
    ForgetFinishedNotifiers();
    notifiers.push_back(std::make_unique<Notifier>(*this, value));
    ++runningNotifiers;
    try {
        notifiers.back()->Start();
    } catch (...) {
        // A thread that can't start is an event lost; the listener must go on listening.
        TraceEndedFailure("InterruptOccurred", "the notifier thread did not start; the event is lost");
        notifiers.pop_back();
        --runningNotifiers;
    }
}

// The observers are called without the device mutex: they may do instrument work, which from
// another thread than the client's would race with the client or wait on the listener.
void PaviloUSBDevice::NotifyObservers(long value, Notifier* notifier)
{
    {
        // Waits for the thread that started the notifier to finish its step.
        const Utilities::MutexLock passed(deviceMutex);
    }
    if (owner != nullptr) {
        try {
            owner->NotifyObservers(value);
        } catch (...) {
            // No caller waits on this thread, and the notifier must still count itself finished,
            // or Shutdown would wait for it in vain.
            TraceEndedFailure("NotifyObservers", "an observer raised a failure");
        }
    }
    const Utilities::MutexLock held(deviceMutex);
    notifier->SetFinished();
    if (--runningNotifiers == 0) {
        notifiersDone.Set();
    }
}

void PaviloUSBDevice::ForgetFinishedNotifiers()
{
    notifiers.remove_if([](const std::unique_ptr<Notifier>& notifier) { return notifier->IsFinished(); });
}

bool PaviloUSBDevice::HasRunningNotifiers()
{
    const Utilities::MutexLock held(deviceMutex);
    return runningNotifiers != 0;
}

void PaviloUSBDevice::Shutdown()
{
    for (std::uint32_t attempt = 1; attempt <= shutdownAttempts; ++attempt) {
        {
            const Utilities::MutexLock held(deviceMutex);
            if (!listening) {
                return;
            }
            shutdownRequested = true;
            listener->CancelPipes();
        }
        std::this_thread::yield();
        if (listenerEnded.Wait(attempt * shutdownStepMs)) {
            return;
        }
    }
}

void PaviloUSBDevice::CloseConnections()
{
    try {
        const Utilities::MutexLock held(deviceMutex);
        connection.reset();
        interruptLatch.reset();
        open = false;
    } catch (...) {
        // Closing runs on the way out of failures and on the listener's thread, where nothing may
        // escape; what was to be dropped is dropped or gone with the failure.
        TraceEndedFailure("CloseConnections", "closing raised a failure");
    }
}

void PaviloUSBDevice::PerformDeviceIOControl(const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length)
{
    const Utilities::MutexLock held(deviceMutex);
    if (!open) {
        throw Utilities::ExceptionOutOfBound("Device IO control impossible (device not open)");
    }
    const UsbResult result = connection->ControlTransfer(request, payload, length, controlTimeoutMs);
    NoteLoss(result);
    if (!result.Succeeded()) {
        throw Utilities::ExceptionOutOfBound(Failure("Device IO control failed", result));
    }
}

void PaviloUSBDevice::Read(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    ReadWriteInternal(Pipe::BulkIn, buffer, length, timeoutMs);
}

void PaviloUSBDevice::Write(const std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    ReadWriteInternal(Pipe::BulkOut, const_cast<std::uint8_t*>(buffer), length, timeoutMs);
}

void PaviloUSBDevice::RequestAndRead(const std::uint8_t* request, std::uint8_t* payload, std::uint32_t payloadLength,
    std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    const Utilities::MutexLock held(deviceMutex);
    PerformDeviceIOControl(request, payload, payloadLength);
    Read(buffer, length, timeoutMs);
}

void PaviloUSBDevice::ReadWriteInternal(Pipe pipe, std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs)
{
    const Utilities::MutexLock held(deviceMutex);
    if (!open) {
        throw Utilities::ExceptionOutOfBound("Read/Write data impossible (device not open)");
    }
    if (pipe != Pipe::BulkIn && pipe != Pipe::BulkOut) {
        throw Utilities::ExceptionOutOfBound("PaviloUSBDevice::ReadWriteInternal:: wrong pipe passed");
    }
    const Utilities::String word(pipe == Pipe::BulkIn ? "Read" : "Write");
    const std::uint32_t waitMs = timeoutMs + transferGraceMs;
    const UsbResult result = pipe == Pipe::BulkIn ? connection->BulkRead(buffer, length, waitMs)
                                                  : connection->BulkWrite(buffer, length, waitMs);
    NoteLoss(result);
    if (!result.Succeeded()) {
        throw Utilities::ExceptionOutOfBound(word + " data failed" + PlatformErrorText(result));
    }
    if (result.Transferred() != length) {
        throw Utilities::ExceptionOutOfBound(word + " data failed (Not enough data)");
    }
}

void PaviloUSBDevice::ReadDataStrip(ScanFifo& fifo, std::uint32_t packetSize, std::uint32_t timeoutMs)
{
    const Utilities::MutexLock held(deviceMutex);
    if (!open) {
        throw Utilities::ExceptionOutOfBound("Read data strip impossible (device not open)");
    }
    const std::uint64_t blockSize = static_cast<std::uint64_t>(packetSize) * packetsPerBlock;
    if (blockSize > largestBlock) {
        throw Utilities::ExceptionOutOfBound("Max packages size is 6553");
    }
    if (blockSize == 0) {
        throw Utilities::ExceptionOutOfBound("Read data faild (wrong data size)");
    }
    {
        // The reads must keep pace with the instrument, whatever else the machine does.
        const RaisedThreadPriority raised;
        StripReads reads(*connection, static_cast<std::uint32_t>(blockSize), timeoutMs + transferGraceMs);
        ReadBlocks(reads, fifo, packetSize);
    }
    fifo.SetFinished();
}

// Until a short block: the next read is queued before the block in hand goes into the FIFO.
void PaviloUSBDevice::ReadBlocks(StripReads& reads, ScanFifo& fifo, std::uint32_t packetSize)
{
    const std::uint32_t blockSize = packetSize * packetsPerBlock;
    reads.QueueNext();
    std::optional<std::uint32_t> processingCount;
    bool firstPass = true;
    while (true) {
        reads.QueueNext();
        if (processingCount) {
            PushPackets(fifo, reads.Processing(), *processingCount, packetSize);
            if (*processingCount != blockSize) {
                return;
            }
            processingCount.reset();
        }
        if (firstPass) {
            // The user hears the start of the strip after this pause.
            Timing_PC().Sleep(stripStartPauseMs);
            StripStartSignal::Sound();
            firstPass = false;
        }
        const UsbResult result = reads.AwaitOldest();
        NoteLoss(result);
        processingCount = CheckedBlock(result, blockSize, packetSize);
    }
}

// The byte count of a block read; a short block must still hold whole packets.
std::uint32_t PaviloUSBDevice::CheckedBlock(const UsbResult& result, std::uint32_t blockSize, std::uint32_t packetSize)
{
    if (result.IsTimeout()) {
        throw Utilities::ExceptionOutOfBound("Read data failed (Timeout)");
    }
    if (!result.Succeeded()) {
        throw Utilities::ExceptionOutOfBound("Read data failed (OverlappedRead)");
    }
    const std::uint32_t count = result.Transferred();
    if (count != blockSize && count % packetSize != 0) {
        throw Utilities::ExceptionOutOfBound("Read data faild (wrong data size)");
    }
    return count;
}

void PaviloUSBDevice::PushPackets(
    ScanFifo& fifo, const std::uint8_t* block, std::uint32_t count, std::uint32_t packetSize)
{
    for (std::uint32_t offset = 0; offset + packetSize <= count; offset += packetSize) {
        if (!fifo.Push(block + offset, packetSize)) {
            throw Utilities::ExceptionOutOfBound("Read data failed (FiFo Error)");
        }
    }
}

bool PaviloUSBDevice::WasInterrupted()
{
    const Utilities::MutexLock held(deviceMutex);
    return open && interruptLatch && interruptLatch->Release();
}

bool PaviloUSBDevice::IsAnyDeviceAttached()
{
    std::vector<Utilities::String> paths;
    return EnumerateDevices(paths) > 0;
}

std::uint16_t PaviloUSBDevice::EnumerateDevices(std::vector<Utilities::String>& paths)
{
    paths = Platform().EnumerateDevices();
    if (paths.size() > MaxDevices) {
        paths.resize(MaxDevices);
    }
    return static_cast<std::uint16_t>(paths.size());
}

}
