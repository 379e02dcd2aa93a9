#pragma once
// Every instrument the module could reach, each tried: can it be opened now, and if not, why and
// what to do. It goes below the exported functions, which only ever open one instrument.

#include <string>
#include <utility>
#include <vector>

#include "driver/platform/UsbInstrumentIds.h"
#include "driver/platform/UsbResult.h"

namespace OrbelCli {

class DeviceSurvey {
public:
    // Each path with "yes" or the reason it can't be opened, the USB instruments first; throws a
    // CliError (code 2) when there is none.
    static std::vector<std::pair<std::string, std::string>> Take();
    // Why none was found, and what to do.
    static std::string NoneFound(const DeviceDriver::UsbInstrumentIds& ids);
    // What a trial open came to, for a person: "yes", or "no: " with the cause and the remedy.
    static std::string Verdict(const DeviceDriver::UsbResult& opened, const DeviceDriver::UsbInstrumentIds& ids);
};

}
