#pragma once
// A virtual instrument for the driver's tests: starts orbel-sim in a private directory and runs its
// commands there.

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/ProgramRunner.h"

namespace OrbelTest {

class SimInstrument {
public:
    static constexpr std::uint32_t DefaultSerial = 1000001;

    // Starts an instrument in a new private directory, with no noise and, at the time scale 0,
    // no waiting.
    explicit SimInstrument(std::uint32_t serial = DefaultSerial, std::string timeScale = "0");
    // Starts one more instrument in the directory of another.
    SimInstrument(const SimInstrument& neighbour, std::uint32_t serial);
    // Takes the instrument that runs already in `directory`, started by whoever wraps the test
    // program (orbel-sim usb-run), and leaves it running.
    SimInstrument(std::string directory, std::uint32_t serial);
    ~SimInstrument();
    SimInstrument(const SimInstrument&) = delete;
    SimInstrument& operator=(const SimInstrument&) = delete;

    // An orbel-sim command for this instrument, e.g. {"fault", "bulk-timeout"}.
    ProgramResult Run(std::vector<std::string> args) const;
    // The same, failing the test unless the command succeeds.
    void Command(const std::vector<std::string>& args) const;

    const std::string& Directory() const { return directory; }
    std::string Path() const { return "sim:" + std::to_string(serial); }

private:
    void Start();

    std::string directory;
    bool ownsDirectory;
    bool started = true;
    std::uint32_t serial;
    std::string timeScale;
};

}
