#include "driver/platform/UsbPlatforms.h"

#include "driver/platform/VirtualPlatform.h"

#ifdef ORBEL_HAVE_LIBUSB
#include "driver/platform/LibUsbPlatform.h"
#endif

namespace DeviceDriver {

UsbPlatforms::UsbPlatforms(const UsbInstrumentIds& ids, bool virtualInstruments)
    : UsbPlatforms(Installed(ids, virtualInstruments))
{
}

UsbPlatforms::UsbPlatforms(std::vector<std::unique_ptr<UsbPlatform>> platforms) : platforms(std::move(platforms)) { }

std::vector<std::unique_ptr<UsbPlatform>> UsbPlatforms::Installed(const UsbInstrumentIds& ids, bool virtualInstruments)
{
    std::vector<std::unique_ptr<UsbPlatform>> installed;
#ifdef ORBEL_HAVE_LIBUSB
    installed.push_back(std::make_unique<LibUsbPlatform>(ids.vendorId, ids.productId));
#else
    static_cast<void>(ids);
#endif
    if (virtualInstruments) {
        installed.push_back(std::make_unique<VirtualPlatform>());
    }
    return installed;
}

bool UsbPlatforms::Serves(const Utilities::String& path) const
{
    for (const auto& platform : platforms) {
        if (platform->Serves(path)) {
            return true;
        }
    }
    return false;
}

std::vector<Utilities::String> UsbPlatforms::EnumerateDevices()
{
    std::vector<Utilities::String> paths;
    for (const auto& platform : platforms) {
        for (const Utilities::String& path : platform->EnumerateDevices()) {
            paths.push_back(path);
        }
    }
    return paths;
}

UsbResult UsbPlatforms::Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection)
{
    connection.reset();
    for (const auto& platform : platforms) {
        if (platform->Serves(path)) {
            return platform->Open(path, connection);
        }
    }
    return UsbResult::NoDevice();
}

}
