#pragma once

#include <cstdint>

#include "driver/platform/UsbResult.h"
#include "utilities/String.h"

namespace DeviceDriver {

// One opened instrument with its four pipes: control, bulk in, bulk out and interrupt in. Closing
// the connection (destroying it) closes the pipes; no transfer may be under way then. Transfers may
// come from several threads at once; Cancel from any.
class UsbConnection {
public:
    static constexpr std::uint32_t ControlRequestSize = 10;
    static constexpr std::uint8_t DirectionIn = 1;

    explicit UsbConnection(const Utilities::String& path);
    virtual ~UsbConnection();
    UsbConnection(const UsbConnection&) = delete;
    UsbConnection& operator=(const UsbConnection&) = delete;

    const Utilities::String& GetPath() const { return path; }

    // A vendor request: `request` is the 10-byte ControlRequest, whose byte 0 gives the direction
    // (DirectionIn: the instrument's answer lands in `payload`; otherwise `payload` is sent).
    // A time-out of 0 waits without limit, here and below.
    virtual UsbResult ControlTransfer(
        const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length, std::uint32_t timeoutMs) = 0;
    // Fewer bytes than asked for are a success: the instrument ends a scan with a short block.
    virtual UsbResult BulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) = 0;
    // A bulk read that runs while the caller goes on; several may be under way, and they complete in
    // the order submitted. Every ticket is awaited exactly once, and `buffer` stays the read's own
    // until then.
    using ReadTicket = std::uint32_t;
    virtual ReadTicket SubmitBulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) = 0;
    // The result of a submitted read, waiting at most `waitMs` for it; a read that hasn't ended by
    // then is given up with the time-out error.
    virtual UsbResult AwaitBulkRead(ReadTicket ticket, std::uint32_t waitMs) = 0;
    // Ends the submitted reads that haven't completed with the cancel error; they are still awaited.
    virtual void CancelBulkReads() = 0;
    virtual UsbResult BulkWrite(const std::uint8_t* data, std::uint32_t length, std::uint32_t timeoutMs) = 0;
    // Blocks until the instrument sends a packet, Cancel is called, or the instrument goes.
    virtual UsbResult InterruptRead(std::uint8_t* buffer, std::uint32_t length) = 0;
    // Ends the transfers under way with the cancel error. An interrupt read that isn't under way
    // yet ends so as soon as it starts, once: a listener between two reads can't miss the cancel.
    virtual void Cancel() = 0;

private:
    Utilities::String path;
};

}
