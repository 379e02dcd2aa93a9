#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "utilities/String.h"

namespace DeviceDriver {

// The USB vendor and product ids of the instrument, which are configuration: the settings file
// (section "Pavilo", keys "UsbVendorId" and "UsbProductId", four hexadecimal digits each), or
// the environment variable ORBEL_USB_ID=vvvv:pppp, which overrides them. Without both ids no real
// instrument is looked for.
struct UsbInstrumentIds {
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;

    bool IsSet() const { return vendorId != 0 && productId != 0; }

    static UsbInstrumentIds Configured();
    // "vvvv:pppp"; nothing for any other text.
    static std::optional<UsbInstrumentIds> FromPair(const std::string& text);
    // Two texts of four hexadecimal digits; nothing unless both are.
    static std::optional<UsbInstrumentIds> FromSettings(
        const Utilities::String& vendor, const Utilities::String& product);
    // False when ORBEL_VIRTUAL=off, so that the module reaches instruments only through USB.
    static bool VirtualInstrumentsWanted();
};

}
