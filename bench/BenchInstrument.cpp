#include "bench/BenchInstrument.h"

#include <cstdlib>
#include <unistd.h>

#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"

namespace OrbelBench {

namespace {

// The instrument that orbel-sim usb-run shows as a USB device around the program, if any.
const char* RunningDirectory()
{
    return std::getenv("ORBEL_SIM_SERIAL") != nullptr ? std::getenv("ORBEL_SIM_DIR") : nullptr;
}

}

BenchInstrument::BenchInstrument(const std::string& name)
    : directory(RunningDirectory() != nullptr
              ? std::filesystem::path(RunningDirectory())
              : std::filesystem::temp_directory_path() / (name + "-" + std::to_string(::getpid()))),
      owned(RunningDirectory() == nullptr)
{
    std::filesystem::create_directories(directory / "locks");
    ::setenv("ORBEL_SIM_DIR", directory.c_str(), 1);
    ::setenv("ORBEL_LOCK_DIR", (directory / "locks").c_str(), 1);
    DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
        new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0)));
    started = !owned || Command("start --noise off --time-scale 0");
}

BenchInstrument::~BenchInstrument()
{
    if (!owned) {
        return;
    }
    Command("stop");
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
}

bool BenchInstrument::Command(const std::string& arguments) const
{
    // Named in the command, as another instrument of the program may have set the variable since.
    const std::string command =
        "ORBEL_SIM_DIR=" + directory.string() + " " + ORBEL_SIM_BINARY + " " + arguments + " > /dev/null";
    return std::system(command.c_str()) == 0;
}

}
