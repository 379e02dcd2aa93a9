#pragma once

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <vector>

#include "driver/AutoResetEvent.h"
#include "driver/InterruptLatch.h"
#include "driver/ScanFifo.h"
#include "driver/platform/UsbConnection.h"
#include "driver/platform/UsbPlatform.h"
#include "driver/platform/UsbResult.h"
#include "utilities/Mutex.h"
#include "utilities/String.h"

namespace DeviceDriver {

class PaviloFunctionalityByte;

// One connection to one instrument: its pipes, the transfers with their time-outs, and a
// listener on the interrupt pipe that tells the owner of key presses (event 0) and of a lost
// connection (event 1), each on a short notifier thread of its own.
//
// The device mutex, named by the cleaned path, keeps every transfer whole against other threads
// and other processes using the same instrument; the interrupt latch is shared by them too.
class PaviloUSBDevice {
public:
    static constexpr std::uint32_t MaxDevices = 127;

    // Opens; raises ExceptionOutOfBound with "PaviloUSBDevice open failed !" when that fails.
    PaviloUSBDevice(PaviloFunctionalityByte* owner, const Utilities::String& address);
    virtual ~PaviloUSBDevice();
    PaviloUSBDevice(const PaviloUSBDevice&) = delete;
    PaviloUSBDevice& operator=(const PaviloUSBDevice&) = delete;

    // Both answer without the device mutex: they only read a flag, and a transfer of another
    // thread or process must not keep them waiting.
    virtual bool IsOpen();
    // True from a transfer or the listener finding the instrument gone until it opens again.
    bool IsLost();
    Utilities::Mutex GetDeviceMutex() const { return deviceMutex; }

    // Never raises; gives the open flag afterwards.
    bool Open();
    // Stops the listener, which closes the connection; gives up after 1 + 2 + 3 + 4 seconds.
    void Shutdown();
    void CloseConnections();
    const Utilities::String& GetDeviceName() const { return address; }

    // The 10-byte ControlRequest and its payload; an answer of the instrument lands in payload.
    void PerformDeviceIOControl(const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length);
    void Read(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs);
    void Write(const std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs);
    // A request and the read of its answer under one hold of the device mutex, so that the lock
    // file is taken once for both.
    void RequestAndRead(const std::uint8_t* request, std::uint8_t* payload, std::uint32_t payloadLength,
        std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs);
    // Reads packets of packetSize into the FIFO, ten to a block, until a short block ends the strip.
    // Two block reads are kept under way, so that the instrument never waits while a block is copied.
    void ReadDataStrip(ScanFifo& fifo, std::uint32_t packetSize, std::uint32_t timeoutMs);

    // True once for any number of key presses since the last question.
    bool WasInterrupted();
    bool IsAnyDeviceAttached();
    static std::uint16_t EnumerateDevices(std::vector<Utilities::String>& paths);

    // The device path without the characters that can't stand in a lock name.
    static Utilities::String CleanPath(const Utilities::String& path);
    // The time-out or error of a transfer, as it stands behind the texts of failures.
    static Utilities::String PlatformErrorText(const UsbResult& result);

private:
    class Listener;
    class Notifier;
    class StripReads;
    enum class Pipe { Control, BulkIn, BulkOut, Interrupt };

    static UsbPlatform& Platform();

    void NoteLoss(const UsbResult& result);
    void ReadWriteInternal(Pipe pipe, std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs);
    bool OpenPipesAndListener();
    bool StartListener();
    std::uint32_t Listen(std::shared_ptr<UsbConnection> pipes);
    bool HandleInterruptPacket(const UsbResult& result);
    void InterruptOccurred(long value);
    void NotifyObservers(long value, Notifier* notifier);
    void ForgetFinishedNotifiers();
    bool HasRunningNotifiers();
    void ReadBlocks(StripReads& reads, ScanFifo& fifo, std::uint32_t packetSize);
    static std::uint32_t CheckedBlock(const UsbResult& result, std::uint32_t blockSize, std::uint32_t packetSize);
    void PushPackets(ScanFifo& fifo, const std::uint8_t* block, std::uint32_t count, std::uint32_t packetSize);

    const Utilities::String address;
    PaviloFunctionalityByte* const owner;
    Utilities::Mutex deviceMutex;
    // The pipes as this device sees them; the listener keeps its own reference until it ends.
    std::shared_ptr<UsbConnection> connection;
    bool shutdownRequested;
    std::atomic<bool> open;
    std::atomic<bool> lost;
    bool listening;
    std::unique_ptr<InterruptLatch> interruptLatch;
    std::list<std::unique_ptr<Notifier>> notifiers;
    std::uint32_t runningNotifiers;
    AutoResetEvent listenerStarted;
    AutoResetEvent listenerEnded;
    AutoResetEvent notifiersDone;
    std::unique_ptr<Listener> listener;
};

}
