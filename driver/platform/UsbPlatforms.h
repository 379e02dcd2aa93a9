#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "driver/platform/UsbInstrumentIds.h"
#include "driver/platform/UsbPlatform.h"

namespace DeviceDriver {

// All the places instruments come from, as one platform: the real instruments are listed first,
// then the virtual ones, and a path is opened by the platform that serves it.
class UsbPlatforms : public UsbPlatform {
public:
    // The real instruments with these ids (none without libusb, or without ids), then the
    // virtual instruments of orbel-sim where they are wanted.
    UsbPlatforms(const UsbInstrumentIds& ids, bool virtualInstruments);
    explicit UsbPlatforms(std::vector<std::unique_ptr<UsbPlatform>> platforms);

    bool Serves(const Utilities::String& path) const override;
    std::vector<Utilities::String> EnumerateDevices() override;
    UsbResult Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection) override;

private:
    static std::vector<std::unique_ptr<UsbPlatform>> Installed(const UsbInstrumentIds& ids, bool virtualInstruments);

    const std::vector<std::unique_ptr<UsbPlatform>> platforms;
};

}
