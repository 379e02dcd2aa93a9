// Cycles of open, measure, scan, unplug and plug against a virtual instrument, with a fault of
// a random kind armed in each cycle. Counts crashes (the program dies), hangs (a call over its
// bound) and the answers of the table, and checks that the instrument's calibration records,
// the stored white among them, are the same bytes at the end as at the start.
// Usage: orbel_soak [CYCLES]   (ORBEL_SOAK_SEED picks another series of faults)
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"
#include "include/orbel.h"
#include "tests/support/ProgramRunner.h"

namespace {

using Clock = std::chrono::steady_clock;

// Far above the bound of any call against an instrument that answers at once.
constexpr auto hangBound = std::chrono::seconds(60);
// The entry list and the calibration records; the log below them changes with every measurement.
constexpr std::streamoff calibrationFrom = 0x1000;
const std::string serial = "1000001";

// erase-eeprom is left out: it wipes the white itself, which no module can keep.
const char* const faults[] = {
    "control-timeout", "bulk-timeout", "short-read", "low-power", "drop", "break-log-main", "break-log-mirror"};
const char* const strips[] = {"builtin:grey8", "builtin:colour24"};

class Soak {
public:
    Soak(std::filesystem::path directory, unsigned seed) : directory(std::move(directory)), random(seed) { }

    bool Start()
    {
        std::filesystem::create_directories(directory / "locks");
        ::setenv("ORBEL_LOCK_DIR", (directory / "locks").c_str(), 1);
        ::setenv("ORBEL_SIM_DIR", directory.c_str(), 1);
        DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
            new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0)));
        if (!Sim({"start", "--noise", "off", "--time-scale", "0", "--eeprom", Eeprom().string()})) {
            return false;
        }
        white = CalibrationBytes();
        return !white.empty();
    }

    void Cycle()
    {
        Sim({"fault", faults[random() % std::size(faults)], "--count", std::to_string(1 + random() % 3)});
        Sim({"place", "tile"});
        Call("is connected", [] { return OB_IsConnected(); });
        Call("reflectance mode", [] { return OB_SetOption("MeasurementMode", "SingleReflectance"); });
        Call("calibrate", [] { return OB_Calibrate(); });
        Sim({"place", "sample:grey50"});
        Call("measure", [] { return OB_TriggerMeasurement(); });
        std::vector<float> values(36);
        Call("spectrum", [&values] { return OB_GetSpectrum(values.data(), 0); });
        Call("scanning mode", [] { return OB_SetOption("MeasurementMode", "ScanningReflectance"); });
        Sim({"place", "tile"});
        Call("scan calibrate", [] { return OB_Calibrate(); });
        Sim({"strip", strips[random() % std::size(strips)]});
        Call("scan", [] { return OB_TriggerMeasurement(); });
        Sim({"unplug"});
        Call("unplugged", [] { return OB_IsConnected(); });
        Sim({"plug"});
    }

    bool WhiteUnchanged() const { return CalibrationBytes() == white; }
    void Stop() { Sim({"stop"}); }

    void Report(unsigned cycles, double seconds) const
    {
        std::printf("cycles %u, calls %lu, %.1f s, %.2f cycles/s\n", cycles, calls, seconds, cycles / seconds);
        std::printf("longest call %.3f s (%s), hangs %lu, sim commands refused %lu\n", longest, longestName.c_str(),
            hangs, simRefusals);
        for (const auto& [code, count] : codes) {
            std::printf("  code %d: %lu\n", code, count);
        }
    }

    unsigned long Hangs() const { return hangs; }

private:
    std::filesystem::path Eeprom() const { return directory / "eeprom.bin"; }

    std::vector<char> CalibrationBytes() const
    {
        std::ifstream file(Eeprom(), std::ios::binary);
        file.seekg(calibrationFrom);
        return std::vector<char>(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

    bool Sim(std::vector<std::string> args)
    {
        args.insert(args.end(), {"--serial", serial});
        const OrbelTest::ProgramResult result =
            OrbelTest::ProgramRunner::Run(ORBEL_SIM_BINARY, args, "ORBEL_SIM_DIR", directory.string());
        if (result.exitCode != 0) {
            ++simRefusals;
            std::fprintf(stderr, "orbel-sim %s: %s", args.front().c_str(), result.err.c_str());
        }
        return result.exitCode == 0;
    }

    void Call(const char* name, const std::function<int32_t()>& call)
    {
        const auto start = Clock::now();
        const int32_t code = call();
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        ++calls;
        ++codes[code];
        if (seconds > longest) {
            longest = seconds;
            longestName = name;
        }
        if (Clock::now() - start > hangBound) {
            ++hangs;
            std::fprintf(stderr, "%s took %.1f s: %s\n", name, seconds, OB_GetDeviceInfo("LastError"));
        }
    }

    const std::filesystem::path directory;
    std::mt19937 random;
    std::vector<char> white;
    unsigned long calls = 0;
    unsigned long hangs = 0;
    unsigned long simRefusals = 0;
    double longest = 0.0;
    std::string longestName;
    std::map<int32_t, unsigned long> codes;
};

}

int main(int argc, char** argv)
{
    const unsigned cycles = argc > 1 ? static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10)) : 1000;
    const char* seedText = std::getenv("ORBEL_SOAK_SEED");
    const unsigned seed = seedText != nullptr ? static_cast<unsigned>(std::strtoul(seedText, nullptr, 10)) : 20261124;
    const std::filesystem::path directory =
        std::filesystem::temp_directory_path() / ("orbel-soak-" + std::to_string(std::random_device()()));
    Soak soak(directory, seed);
    if (!soak.Start()) {
        std::fprintf(stderr, "the virtual instrument didn't start\n");
        return 2;
    }
    const auto start = Clock::now();
    for (unsigned cycle = 1; cycle <= cycles; ++cycle) {
        soak.Cycle();
        if (cycle % 50 == 0) {
            std::printf("cycle %u, %.0f s\n", cycle, std::chrono::duration<double>(Clock::now() - start).count());
            std::fflush(stdout);
        }
    }
    const bool whiteKept = soak.WhiteUnchanged();
    soak.Report(cycles, std::chrono::duration<double>(Clock::now() - start).count());
    std::printf("calibration records and white %s\n", whiteKept ? "unchanged" : "CHANGED");
    soak.Stop();
    std::error_code ignored;
    std::filesystem::remove_all(directory, ignored);
    return whiteKept && soak.Hangs() == 0 ? 0 : 1;
}
