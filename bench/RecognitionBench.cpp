#include <benchmark/benchmark.h>

#include <cmath>

#include "driver/SpectrumData.h"
#include "manager/pavilo/RecognitionMarvane.h"

using DeviceDriver::SpectrumData;
using HviManager::PaviloDriver::RecognitionMarvane;
using Utilities::Vector;

namespace {

constexpr unsigned long scanLength = 2000;
constexpr unsigned long fieldLength = 95;

// A strip of twenty coloured fields, each with its own slope across the wavelengths, and a
// little ripple so that no two measurements are alike.
SpectrumData MeasurementAt(unsigned long position)
{
    const unsigned long field = position / fieldLength;
    Vector<float> row(36);
    for (unsigned long value = 0; value < 36; ++value) {
        const double slope = std::sin(static_cast<double>(field * 7 + value) * 0.3);
        const double ripple = 0.002 * std::sin(static_cast<double>(position));
        row[value] = static_cast<float>(0.45 + 0.35 * slope + ripple);
    }
    SpectrumData measurement;
    measurement.Resize(1);
    measurement.Store(row);
    return measurement;
}

void BM_RecognizeScanOf2000Measurements(benchmark::State& state)
{
    Vector<SpectrumData> scan(scanLength);
    for (unsigned long position = 0; position < scanLength; ++position) {
        scan[position] = MeasurementAt(position);
    }
    Vector<SpectrumData> patches(0);
    for (auto _ : state) {
        RecognitionMarvane recognition;
        benchmark::DoNotOptimize(recognition.Recognize(scan, patches));
    }
    state.counters["patches"] = static_cast<double>(patches.Size());
}

}

BENCHMARK(BM_RecognizeScanOf2000Measurements)->Unit(benchmark::kMillisecond);
