#include "tests/api/ApiSimEnvironment.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"
#include "utilities/SmartPointer.h"

// A program that measures how its threads meet lets the instrument take its time.
#ifndef ORBEL_SIM_TIME_SCALE
#define ORBEL_SIM_TIME_SCALE "0"
#endif

namespace {

OrbelTest::SimInstrument* simulated = nullptr;
std::filesystem::path lockDirectory;

// The instrument that a wrapper runs already (orbel-sim usb-run names it), or one of our own.
OrbelTest::SimInstrument* NewInstrument()
{
    const char* serial = std::getenv("ORBEL_SIM_SERIAL");
    const char* directory = std::getenv("ORBEL_SIM_DIR");
    if (serial != nullptr && directory != nullptr) {
        return new OrbelTest::SimInstrument(directory, static_cast<std::uint32_t>(std::stoul(serial)));
    }
    return new OrbelTest::SimInstrument(OrbelTest::SimInstrument::DefaultSerial, ORBEL_SIM_TIME_SCALE);
}

// Registered before the module's object exists, so it runs after that object's own exit step.
void StopAtExit()
{
    delete simulated;
    simulated = nullptr;
    std::error_code ignored;
    std::filesystem::remove_all(lockDirectory, ignored);
}

const ::testing::Environment* const registered = ::testing::AddGlobalTestEnvironment(new ApiSimEnvironment());

}

OrbelTest::SimInstrument& ApiSimEnvironment::Sim()
{
    return *simulated;
}

void ApiSimEnvironment::SetUp()
{
    lockDirectory =
        std::filesystem::temp_directory_path() / ("orbel-api-locks-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(lockDirectory);
    ::setenv("ORBEL_LOCK_DIR", lockDirectory.c_str(), 1);
    simulated = NewInstrument();
    ::setenv("ORBEL_SIM_DIR", simulated->Directory().c_str(), 1);
    // The instrument runs fast, so the driver's pauses need not last.
    DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
        new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0)));
    std::atexit(StopAtExit);
}
