#include "driver/platform/LibUsbPlatform.h"

#include <libusb.h>

namespace DeviceDriver {

namespace {

const char* const libUsbPathPrefix = "usb:";
// The deepest chain of hubs that USB allows.
constexpr int MaxPortDepth = 7;

void FreeDeviceList(libusb_device** list)
{
    libusb_free_device_list(list, 1);
}

// The devices of a list, and the references they hold, stay valid until the list is freed.
using DeviceList = std::unique_ptr<libusb_device*[], decltype(&FreeDeviceList)>;

DeviceList ListDevices(libusb_context* context, long& count)
{
    libusb_device** list = nullptr;
    count = libusb_get_device_list(context, &list);
    return DeviceList(count >= 0 ? list : nullptr, &FreeDeviceList);
}

}

LibUsbPlatform::LibUsbPlatform(std::uint16_t vendorId, std::uint16_t productId)
    : vendorId(vendorId), productId(productId)
{
    libusb_context* created = nullptr;
    if (vendorId != 0 && productId != 0 && libusb_init(&created) == 0) {
        context = std::shared_ptr<libusb_context>(created, libusb_exit);
    }
}

bool LibUsbPlatform::Serves(const Utilities::String& path) const
{
    return HasPrefix(path, libUsbPathPrefix);
}

std::vector<Utilities::String> LibUsbPlatform::EnumerateDevices()
{
    std::vector<Utilities::String> paths;
    if (!context) {
        return paths;
    }
    long count = 0;
    const DeviceList list = ListDevices(context.get(), count);
    for (libusb_device* device : Instruments(list.get(), count)) {
        paths.emplace_back(PathOf(device));
    }
    return paths;
}

UsbResult LibUsbPlatform::Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection)
{
    connection.reset();
    if (!context || !Serves(path)) {
        return UsbResult::NoDevice();
    }
    long count = 0;
    const DeviceList list = ListDevices(context.get(), count);
    if (count < 0) {
        return LibUsbConnection::ErrorResult(static_cast<int>(count));
    }
    for (libusb_device* device : Instruments(list.get(), count)) {
        if (PathOf(device) == path.ToStdString()) {
            return OpenDevice(device, path, connection);
        }
    }
    return UsbResult::NoDevice();
}

std::vector<libusb_device*> LibUsbPlatform::Instruments(libusb_device* const* list, long count) const
{
    std::vector<libusb_device*> found;
    for (long i = 0; i < count; ++i) {
        libusb_device_descriptor descriptor{};
        if (libusb_get_device_descriptor(list[i], &descriptor) == 0 && descriptor.idVendor == vendorId &&
            descriptor.idProduct == productId) {
            found.push_back(list[i]);
        }
    }
    return found;
}

UsbResult LibUsbPlatform::OpenDevice(
    libusb_device* device, const Utilities::String& path, std::unique_ptr<UsbConnection>& connection)
{
    int interfaceNumber = 0;
    LibUsbConnection::Endpoints endpoints;
    if (const int described = FindEndpoints(device, interfaceNumber, endpoints); described != 0) {
        return LibUsbConnection::ErrorResult(described);
    }
    libusb_device_handle* handle = nullptr;
    if (const int opened = libusb_open(device, &handle); opened != 0) {
        return LibUsbConnection::ErrorResult(opened);
    }
    // Where the system doesn't allow detaching a kernel driver, the claim tells.
    libusb_set_auto_detach_kernel_driver(handle, 1);
    if (const int claimed = libusb_claim_interface(handle, interfaceNumber); claimed != 0) {
        libusb_close(handle);
        return LibUsbConnection::ErrorResult(claimed);
    }
    connection = std::make_unique<LibUsbConnection>(path, context, handle, interfaceNumber, endpoints);
    return UsbResult::Success(0);
}

// The first interface of the active configuration, in its first alternate setting, that has a
// bulk-in, a bulk-out and an interrupt-in endpoint.
int LibUsbPlatform::FindEndpoints(libusb_device* device, int& interfaceNumber, LibUsbConnection::Endpoints& endpoints)
{
    libusb_config_descriptor* configuration = nullptr;
    if (const int got = libusb_get_active_config_descriptor(device, &configuration); got != 0) {
        return got;
    }
    int result = LIBUSB_ERROR_NOT_FOUND;
    for (int i = 0; i < configuration->bNumInterfaces && result != 0; ++i) {
        if (configuration->interface[i].num_altsetting < 1) {
            continue;
        }
        const libusb_interface_descriptor& setting = configuration->interface[i].altsetting[0];
        LibUsbConnection::Endpoints found;
        for (int e = 0; e < setting.bNumEndpoints; ++e) {
            const std::uint8_t address = setting.endpoint[e].bEndpointAddress;
            const int type = setting.endpoint[e].bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
            const bool in = (address & LIBUSB_ENDPOINT_DIR_MASK) == LIBUSB_ENDPOINT_IN;
            std::uint8_t* slot = type == LIBUSB_TRANSFER_TYPE_BULK ? (in ? &found.bulkIn : &found.bulkOut)
                : type == LIBUSB_TRANSFER_TYPE_INTERRUPT && in     ? &found.interruptIn
                                                                   : nullptr;
            if (slot != nullptr && *slot == 0) {
                *slot = address;
            }
        }
        if (found.bulkIn != 0 && found.bulkOut != 0 && found.interruptIn != 0) {
            interfaceNumber = setting.bInterfaceNumber;
            endpoints = found;
            result = 0;
        }
    }
    libusb_free_config_descriptor(configuration);
    return result;
}

std::string LibUsbPlatform::PathOf(libusb_device* device)
{
    std::uint8_t ports[MaxPortDepth] = {};
    const int depth = libusb_get_port_numbers(device, ports, MaxPortDepth);
    std::string path = libUsbPathPrefix + std::to_string(libusb_get_bus_number(device)) + "-";
    for (int i = 0; i < depth; ++i) {
        if (i > 0) {
            path += '.';
        }
        path += std::to_string(ports[i]);
    }
    return path;
}

}
