#pragma once
// A virtual instrument that the module finds, with private lock and instrument directories and
// a time base fast enough that the driver's pauses cost nothing.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"
#include "tests/support/SimInstrument.h"

namespace DeviceDriverTest {

class PaviloSimFixture : public ::testing::Test {
protected:
    PaviloSimFixture()
        : lockDirectory(std::filesystem::temp_directory_path() /
              ("orbel-pavilo-locks-" + std::to_string(std::random_device()()))),
          savedTimeBase(DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
              new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0))))
    {
        std::filesystem::create_directories(lockDirectory);
        ::setenv("ORBEL_LOCK_DIR", lockDirectory.c_str(), 1);
        ::setenv("ORBEL_SIM_DIR", sim.Directory().c_str(), 1);
    }

    ~PaviloSimFixture() override
    {
        ::unsetenv("ORBEL_SIM_DIR");
        ::unsetenv("ORBEL_LOCK_DIR");
        DeviceDriver::TimeBase::Replace(savedTimeBase);
        std::error_code ignored;
        std::filesystem::remove_all(lockDirectory, ignored);
    }

    // A counter of the instrument's status, such as "bulk_in".
    std::uint64_t Counter(const std::string& name) const
    {
        const std::string status = sim.Run({"status"}).out;
        const std::string key = "\"" + name + "\":";
        const std::size_t at = status.find(key);
        EXPECT_NE(at, std::string::npos) << status;
        return at == std::string::npos ? 0 : std::stoull(status.substr(at + key.size()));
    }

    // Two patches, so that the hand travels `travelMm`; at 100 mm/s and 100 integration ticks
    // one measurement is taken each 0.68 mm.
    void DrawStripOf(std::uint32_t measurements)
    {
        const double travelMm = (measurements - 1) * 0.68 + 0.3;
        const std::string file = sim.Directory() + "/strip.txt";
        std::ofstream out(file);
        for (int patch = 0; patch < 2; ++patch) {
            out << travelMm;
            for (int value = 0; value < 36; ++value) {
                out << " 0.5";
            }
            out << "\n";
        }
        out.close();
        sim.Command({"strip", file, "--speed", "100"});
    }

    // Waits up to five seconds for the condition.
    static bool Eventually(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

    std::filesystem::path lockDirectory;
    Utilities::SmartPointer<DeviceDriver::TimeBase> savedTimeBase;
    OrbelTest::SimInstrument sim;
};

}
