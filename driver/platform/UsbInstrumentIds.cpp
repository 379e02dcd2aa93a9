#include "driver/platform/UsbInstrumentIds.h"

#include <cstdlib>

#include "utilities/Preferences.h"
#include "utilities/ResolveAs.h"

namespace DeviceDriver {

namespace {

const char* const settingsSection = "Pavilo";
constexpr std::size_t idDigits = 4;

std::optional<std::uint16_t> HexadecimalId(const std::string& text)
{
    if (text.size() != idDigits || text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(std::stoul(text, nullptr, 16));
}

}

UsbInstrumentIds UsbInstrumentIds::Configured()
{
    if (const char* pair = std::getenv("ORBEL_USB_ID"); pair != nullptr && *pair != '\0') {
        return FromPair(pair).value_or(UsbInstrumentIds{});
    }
    const Utilities::SmartPointer<Utilities::Preferences> settings =
        Utilities::ResolveAs<Utilities::Preferences>("Preferences");
    if (settings.IsNull()) {
        return {};
    }
    return FromSettings(settings->Get(settingsSection, "UsbVendorId", Utilities::String()),
        settings->Get(settingsSection, "UsbProductId", Utilities::String()))
        .value_or(UsbInstrumentIds{});
}

std::optional<UsbInstrumentIds> UsbInstrumentIds::FromPair(const std::string& text)
{
    if (text.size() != 2 * idDigits + 1 || text[idDigits] != ':') {
        return std::nullopt;
    }
    return FromSettings(Utilities::String(text.substr(0, idDigits)), Utilities::String(text.substr(idDigits + 1)));
}

std::optional<UsbInstrumentIds> UsbInstrumentIds::FromSettings(
    const Utilities::String& vendor, const Utilities::String& product)
{
    const std::optional<std::uint16_t> vendorId = HexadecimalId(vendor.ToStdString());
    const std::optional<std::uint16_t> productId = HexadecimalId(product.ToStdString());
    if (!vendorId || !productId) {
        return std::nullopt;
    }
    return UsbInstrumentIds{*vendorId, *productId};
}

bool UsbInstrumentIds::VirtualInstrumentsWanted()
{
    const char* setting = std::getenv("ORBEL_VIRTUAL");
    return setting == nullptr || std::string(setting) != "off";
}

}
