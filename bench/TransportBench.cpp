#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "driver/PaviloFunctionality.h"
#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"

using DeviceDriver::PaviloFunctionality;

namespace {

// One packet of 256 bytes per integration time of 100 ticks of 68 us.
constexpr double instrumentPacketsPerSecond = 1.0 / (100 * 68e-6);
constexpr std::uint32_t stripMeasurements = 2000;

// A virtual instrument at time scale 0 in a directory of its own, for the life of the program.
class BenchInstrument {
public:
    BenchInstrument()
        : directory(std::filesystem::temp_directory_path() / ("orbel-bench-" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(directory / "locks");
        ::setenv("ORBEL_SIM_DIR", directory.c_str(), 1);
        ::setenv("ORBEL_LOCK_DIR", (directory / "locks").c_str(), 1);
        DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
            new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0)));
        started = Sim("start --noise off --time-scale 0 > /dev/null") == 0;
        WriteStrip();
    }

    ~BenchInstrument()
    {
        Sim("stop > /dev/null");
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }

    bool Started() const { return started; }

    // Set before each scan: a strip is drawn once.
    bool DrawStrip() const { return Sim("strip " + (directory / "strip.txt").string() + " --speed 100") == 0; }

private:
    int Sim(const std::string& arguments) const { return std::system((std::string(ORBEL_SIM_BINARY) + " " + arguments).c_str()); }

    void WriteStrip() const
    {
        std::ofstream out(directory / "strip.txt");
        for (int patch = 0; patch < 2; ++patch) {
            out << (stripMeasurements - 1) * 0.68 + 0.3;
            for (int value = 0; value < 36; ++value) {
                out << " 0.5";
            }
            out << "\n";
        }
    }

    std::filesystem::path directory;
    bool started = false;
};

BenchInstrument& Instrument()
{
    static BenchInstrument instrument;
    return instrument;
}

// Opening a connection and loading the EEPROM image, as the first use of an instrument does.
void BM_OpenAndLoadEEPROMImage(benchmark::State& state)
{
    if (!Instrument().Started()) {
        state.SkipWithError("orbel-sim did not start");
        return;
    }
    std::uint8_t word[4];
    for (auto _ : state) {
        PaviloFunctionality functionality;
        if (!functionality.OpenDevice("default")) {
            state.SkipWithError("no instrument");
            return;
        }
        functionality.ReadEEPROM(0, 4, word, 4);
        benchmark::DoNotOptimize(word);
        functionality.CloseDevice();
    }
}
BENCHMARK(BM_OpenAndLoadEEPROMImage)->Unit(benchmark::kMillisecond);

// A strip of packets of one measurement, read into the FIFO and taken out again. The time for
// drawing the strip on the virtual instrument is left out.
void BM_StripThroughput(benchmark::State& state)
{
    if (!Instrument().Started()) {
        state.SkipWithError("orbel-sim did not start");
        return;
    }
    PaviloFunctionality functionality;
    if (!functionality.OpenDevice("default")) {
        state.SkipWithError("no instrument");
        return;
    }
    std::uint8_t packet[256];
    std::uint64_t packets = 0;
    for (auto _ : state) {
        state.PauseTiming();
        Instrument().DrawStrip();
        functionality.SetMeasureParameters(100, 0, 1, 0x01);
        state.ResumeTiming();
        functionality.StartScan(sizeof packet, 5);
        std::uint32_t size = sizeof packet;
        for (functionality.GetScanData(packet, size); size != 0; functionality.GetScanData(packet, size)) {
            ++packets;
        }
    }
    state.counters["packets/s"] = benchmark::Counter(static_cast<double>(packets), benchmark::Counter::kIsRate);
    state.counters["cpu_s/packet"] = benchmark::Counter(static_cast<double>(packets),
                                                        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["instrument_packets/s"] = instrumentPacketsPerSecond;
    state.SetBytesProcessed(static_cast<std::int64_t>(packets * sizeof packet));
}
BENCHMARK(BM_StripThroughput)->Unit(benchmark::kMillisecond);

}
