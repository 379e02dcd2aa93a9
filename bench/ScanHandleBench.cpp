#include <benchmark/benchmark.h>

#include <cstdint>

#include "bench/SyntheticSensor.h"
#include "driver/DriverCalculation.h"
#include "driver/RemissionScanHandle.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
#include "driver/SpectrumDataFifo.h"
#include "utilities/SmartPointer.h"

using DeviceDriver::DriverCalculation;
using DeviceDriver::SensorData;
using DeviceDriver::SensorDataFifo;
using OrbelBench::SyntheticSensor;

namespace {

constexpr unsigned long whiteRows = 100;
constexpr unsigned long stripLength = 2000;
constexpr float integrationTime = 0.0068f;

SensorData Measurement(double reflectance, unsigned long rows)
{
    return SyntheticSensor::Measurement(reflectance, rows, integrationTime);
}

// A scan handle whose calculation was calibrated on a tile with a white of a row per repeat.
class CalibratedScanHandle : public DeviceDriver::RemissionScanHandle {
public:
    CalibratedScanHandle()
    {
        calculation = Utilities::SmartPointer<DriverCalculation>(new DriverCalculation(SyntheticSensor::Calibration()));
        SensorData dark = Measurement(0.0, 1);
        calculation->CalculateDark(dark);
        SensorData white = Measurement(0.9, whiteRows);
        uint16_t filter = 0;
        calculation->CalculateWhite(white, filter, false, 0.5f);
    }

    DeviceDriver::SpectrumDataFifo& Spectra() { return sampleFifo; }
    void StartStrip() { calculation->ResetWhite(); }
};

void Fill(SensorDataFifo& strip, const SensorData& measurement)
{
    for (unsigned long i = 0; i < stripLength; ++i) {
        strip.Push(measurement);
    }
    strip.SetFinished(true);
}

// A strip of 2000 one-row measurements, from the end of the reading to the filled spectrum FIFO.
void BM_ScanHandleStripOf2000(benchmark::State& state)
{
    CalibratedScanHandle handle;
    const SensorData measurement = Measurement(0.45, 1);
    for (auto _ : state) {
        state.PauseTiming();
        SensorDataFifo strip;
        Fill(strip, measurement);
        handle.Spectra().Clear();
        handle.StartStrip();
        state.ResumeTiming();
        handle.CalculateStrip(strip);
        benchmark::DoNotOptimize(handle.Spectra().Size());
    }
}
BENCHMARK(BM_ScanHandleStripOf2000)->Unit(benchmark::kMillisecond);

}
