#pragma once

#include <filesystem>
#include <string>

namespace OrbelBench {

// A virtual instrument at time scale 0 in a directory of its own, for the life of the program,
// on a time base a thousand times faster; or, under orbel-sim usb-run, the instrument it shows as
// a USB device, left running. The directories are set before the module's first
// call, which is what finds them.
class BenchInstrument {
public:
    explicit BenchInstrument(const std::string& name);
    ~BenchInstrument();
    BenchInstrument(const BenchInstrument&) = delete;
    BenchInstrument& operator=(const BenchInstrument&) = delete;

    bool Started() const { return started; }
    const std::filesystem::path& Directory() const { return directory; }
    // Runs orbel-sim with the arguments, its output discarded; true when it succeeded.
    bool Command(const std::string& arguments) const;

private:
    std::filesystem::path directory;
    bool owned;
    bool started = false;
};

}
