#pragma once

#include <memory>
#include <string>
#include <vector>

#include "driver/platform/UsbPlatform.h"

namespace DeviceDriver {

// The virtual instruments that orbel-sim plugs in: each is published in a directory (SimSocket)
// and has the path "sim:<serial>". Any number of connections, from any processes, may be open to
// one.
class VirtualPlatform : public UsbPlatform {
public:
    // With an empty directory, DefaultDirectory is asked anew at each use.
    explicit VirtualPlatform(const Utilities::String& directory = Utilities::String());

    // $ORBEL_SIM_DIR, else the system's own place (SimSocket).
    static Utilities::String DefaultDirectory();

    bool Serves(const Utilities::String& path) const override;
    // The serials whose instrument answers, in the order of their numbers.
    std::vector<Utilities::String> EnumerateDevices() override;
    // Returns once the instrument has taken the connection: a key pressed after that reaches it.
    UsbResult Open(const Utilities::String& path, std::unique_ptr<UsbConnection>& connection) override;

private:
    std::string Directory() const;
    static bool IsSerial(const std::string& serial);

    Utilities::String directory;
};

}
