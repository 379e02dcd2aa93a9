#pragma once

#include <memory>
#include <vector>

#include "driver/platform/UsbConnection.h"
#include "driver/platform/UsbResult.h"
#include "utilities/String.h"

namespace DeviceDriver {

// Where instruments come from. Device paths name the platform: "usb:<bus>-<ports>" for a real
// instrument, "sim:<serial>" for a virtual one.
class UsbPlatform {
public:
    UsbPlatform() = default;
    virtual ~UsbPlatform();
    UsbPlatform(const UsbPlatform&) = delete;
    UsbPlatform& operator=(const UsbPlatform&) = delete;

    // True if the path is of this platform's kind, whether or not such an instrument is attached.
    virtual bool Serves(const Utilities::String& path) const = 0;
    // The paths of the instruments attached now, in the platform's order.
    virtual std::vector<Utilities::String> EnumerateDevices() = 0;
    // Opens the pipes of a path. On failure `connection` stays empty and the result says why.
    virtual UsbResult Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection) = 0;

protected:
    static bool HasPrefix(const Utilities::String& path, const char* prefix);
};

}
