#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/BenchInstrument.h"
#include "driver/PaviloFunctionality.h"

using DeviceDriver::PaviloFunctionality;

namespace {

// One packet of 256 bytes per integration time of 100 ticks of 68 us.
constexpr double instrumentPacketsPerSecond = 1.0 / (100 * 68e-6);
constexpr std::uint32_t stripMeasurements = 2000;

OrbelBench::BenchInstrument& Instrument()
{
    static OrbelBench::BenchInstrument instrument("orbel-bench");
    return instrument;
}

// Two patches of one colour, so long that the hand makes a strip of the measurements wanted.
bool DrawStrip()
{
    const std::filesystem::path file = Instrument().Directory() / "strip.txt";
    std::ofstream out(file);
    for (int patch = 0; patch < 2; ++patch) {
        out << (stripMeasurements - 1) * 0.68 + 0.3;
        for (int value = 0; value < 36; ++value) {
            out << " 0.5";
        }
        out << "\n";
    }
    out.close();
    return Instrument().Command("strip " + file.string() + " --speed 100");
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
        DrawStrip();
        functionality.SetMeasureParameters(100, 0, 1, 0x01);
        state.ResumeTiming();
        functionality.StartScan(sizeof packet, 5);
        std::uint32_t size = sizeof packet;
        for (functionality.GetScanData(packet, size); size != 0; functionality.GetScanData(packet, size)) {
            ++packets;
        }
    }
    state.counters["packets/s"] = benchmark::Counter(static_cast<double>(packets), benchmark::Counter::kIsRate);
    state.counters["cpu_s/packet"] =
        benchmark::Counter(static_cast<double>(packets), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["instrument_packets/s"] = instrumentPacketsPerSecond;
    state.SetBytesProcessed(static_cast<std::int64_t>(packets * sizeof packet));
}
// A fixed count of strips: under the emulated USB device, umockdev's preload keeps a socket for every
// failed open of a device node (the strip's bell on a missing /dev/tty) and gives out at about 50.
BENCHMARK(BM_StripThroughput)->Iterations(20)->Unit(benchmark::kMillisecond);

}
