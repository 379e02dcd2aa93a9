#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <set>

#include "driver/platform/UsbConnection.h"

struct libusb_context;
struct libusb_device_handle;
struct libusb_transfer;

namespace DeviceDriver {

// One connection to a real instrument through libusb, with its interface claimed. Every transfer
// runs asynchronously, so that Cancel can end it from another thread; the thread that waits for a
// transfer handles libusb's events until its own transfer is done.
class LibUsbConnection : public UsbConnection {
public:
    struct Endpoints {
        std::uint8_t bulkIn = 0;
        std::uint8_t bulkOut = 0;
        std::uint8_t interruptIn = 0;
    };

    // Takes over an opened handle whose interface `interfaceNumber` is claimed.
    LibUsbConnection(const Utilities::String& path, std::shared_ptr<libusb_context> context,
        libusb_device_handle* handle, int interfaceNumber, const Endpoints& endpoints);
    ~LibUsbConnection() override;

    UsbResult ControlTransfer(
        const std::uint8_t* request, std::uint8_t* payload, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult BulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult BulkWrite(const std::uint8_t* data, std::uint32_t length, std::uint32_t timeoutMs) override;
    ReadTicket SubmitBulkRead(std::uint8_t* buffer, std::uint32_t length, std::uint32_t timeoutMs) override;
    UsbResult AwaitBulkRead(ReadTicket ticket, std::uint32_t waitMs) override;
    void CancelBulkReads() override;
    UsbResult InterruptRead(std::uint8_t* buffer, std::uint32_t length) override;
    void Cancel() override;

    // A libusb error code as the platform's error.
    static UsbResult ErrorResult(int libusbError);

private:
    // A submitted bulk read: its transfer, or why it couldn't be submitted.
    struct Submitted {
        libusb_transfer* transfer = nullptr;
        int completed = 0;
        int refusal = 0;
    };

    UsbResult Run(libusb_transfer* transfer, bool interrupt);
    bool HandleEventsUntil(int& completed, libusb_transfer* transfer, std::uint32_t waitMs);
    static UsbResult Outcome(const libusb_transfer* transfer);

    std::shared_ptr<libusb_context> context;
    libusb_device_handle* const handle;
    const int interfaceNumber;
    const Endpoints endpoints;
    std::mutex mutex;
    std::set<libusb_transfer*> underWay;
    std::map<ReadTicket, std::unique_ptr<Submitted>> submitted;
    ReadTicket lastTicket = 0;
    bool interruptCancelled = false;
};

}
