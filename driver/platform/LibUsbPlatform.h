#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "driver/platform/LibUsbConnection.h"
#include "driver/platform/UsbPlatform.h"

struct libusb_context;
struct libusb_device;

namespace DeviceDriver {

// The real instruments, through libusb: the devices with the instrument's vendor and product ids,
// as "usb:<bus>-<ports>" (ports joined by dots). The ids come from the settings file; with an id of
// 0 nothing is looked for. The endpoints come from the interface descriptor.
class LibUsbPlatform : public UsbPlatform {
public:
    LibUsbPlatform(std::uint16_t vendorId, std::uint16_t productId);

    bool Serves(const Utilities::String& path) const override;
    std::vector<Utilities::String> EnumerateDevices() override;
    UsbResult Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection) override;

private:
    std::vector<libusb_device*> Instruments(libusb_device* const* list, long count) const;
    UsbResult OpenDevice(
        libusb_device* device, const Utilities::String& path, std::unique_ptr<UsbConnection>& connection);
    static int FindEndpoints(libusb_device* device, int& interfaceNumber, LibUsbConnection::Endpoints& endpoints);
    static std::string PathOf(libusb_device* device);

    const std::uint16_t vendorId;
    const std::uint16_t productId;
    std::shared_ptr<libusb_context> context;
};

}
