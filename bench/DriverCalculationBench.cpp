#include <benchmark/benchmark.h>

#include <cstdint>

#include "bench/SyntheticSensor.h"
#include "driver/DriverCalculation.h"
#include "driver/SensorData.h"
#include "driver/SpectrumData.h"
#include "utilities/String.h"

using DeviceDriver::DriverCalculation;
using DeviceDriver::SensorData;
using DeviceDriver::SpectrumData;
using OrbelBench::SyntheticSensor;

namespace {

constexpr unsigned long rowCount = 4;
constexpr unsigned long wavelengthCount = 36;
constexpr float integrationTime = 0.0204f;

SensorData Measurement(double reflectance)
{
    return SyntheticSensor::Measurement(reflectance, rowCount, integrationTime);
}

DriverCalculation CalibratedOnTile()
{
    DriverCalculation calculation(SyntheticSensor::Calibration());
    SensorData dark = Measurement(0.0);
    calculation.CalculateDark(dark);
    SensorData white = Measurement(0.9);
    uint16_t filter = 0;
    calculation.CalculateWhite(white, filter, true, 1.0f);
    return calculation;
}

// A reflectance sample of four repeats, from the raw pixels to the spectrum, the copy of the
// fresh measurement included.
void BM_DriverCalculationRemissionSample(benchmark::State& state)
{
    DriverCalculation calculation = CalibratedOnTile();
    const SensorData measurement = Measurement(0.45);
    const Utilities::String mode("Remission");
    SpectrumData result;
    for (auto _ : state) {
        SensorData sensor(measurement);
        calculation.CalculateSample(sensor, result, mode);
        benchmark::DoNotOptimize(result.Load()[wavelengthCount - 1]);
    }
}
BENCHMARK(BM_DriverCalculationRemissionSample)->Unit(benchmark::kMicrosecond);

}
