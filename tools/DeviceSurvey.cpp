#include "tools/DeviceSurvey.h"

#include <cerrno>
#include <cstdio>
#include <memory>

#include "driver/platform/UsbPlatforms.h"
#include "orbel.h"
#include "tools/CliError.h"
#include "tools/Instrument.h"

namespace OrbelCli {

namespace {

std::string Hexadecimal(std::uint16_t id)
{
    char digits[5];
    std::snprintf(digits, sizeof digits, "%04x", id);
    return digits;
}

// The installed rule carries placeholder ids; the copy in /etc takes the configured ones.
std::string UdevRuleCommands(const DeviceDriver::UsbInstrumentIds& ids)
{
    return "sed 's/\"0000\"/\"" + Hexadecimal(ids.vendorId) + "\"/; s/\"0000\"/\"" + Hexadecimal(ids.productId) +
        "\"/' packaging/60-orbel.rules | sudo tee /etc/udev/rules.d/60-orbel.rules && "
        "sudo udevadm control --reload-rules && sudo udevadm trigger";
}

}

std::vector<std::pair<std::string, std::string>> DeviceSurvey::Take()
{
    const DeviceDriver::UsbInstrumentIds ids = DeviceDriver::UsbInstrumentIds::Configured();
    DeviceDriver::UsbPlatforms platforms(ids, DeviceDriver::UsbInstrumentIds::VirtualInstrumentsWanted());
    std::vector<std::pair<std::string, std::string>> devices;
    for (const Utilities::String& path : platforms.EnumerateDevices()) {
        std::unique_ptr<DeviceDriver::UsbConnection> connection;
        const DeviceDriver::UsbResult opened = platforms.Open(path, connection);
        devices.emplace_back(path.ToStdString(), Verdict(opened, ids));
    }
    if (devices.empty()) {
        throw CliError(OB_DeviceNotConnected, NoneFound(ids));
    }
    return devices;
}

std::string DeviceSurvey::NoneFound(const DeviceDriver::UsbInstrumentIds& ids)
{
    const std::string usb = ids.IsSet()
        ? "None has the USB ids " + Hexadecimal(ids.vendorId) + ":" + Hexadecimal(ids.productId) + "."
        : "No USB ids are configured: set UsbVendorId and UsbProductId in the section [Pavilo] of the "
          "settings file, or ORBEL_USB_ID=vvvv:pppp.";
    return "No instrument is connected. " + usb + "\n" + Instrument::TryWithoutHardware;
}

std::string DeviceSurvey::Verdict(const DeviceDriver::UsbResult& opened, const DeviceDriver::UsbInstrumentIds& ids)
{
    if (opened.Succeeded()) {
        return "yes";
    }
    if (opened.Error() == static_cast<std::uint32_t>(EACCES)) {
        return "no: permission denied. Install the udev rule from packaging/ with the instrument's ids "
               "and plug the instrument in again: " +
            UdevRuleCommands(ids);
    }
    if (opened.Error() == static_cast<std::uint32_t>(EBUSY)) {
        return "no: busy (held by another program). Close that program or wait until it has finished.";
    }
    return "no: " + opened.Text().ToStdString();
}

}
