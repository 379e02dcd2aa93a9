#include <benchmark/benchmark.h>

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "driver/DriverCalculation.h"
#include "driver/RemissionScanHandle.h"
#include "driver/SensorData.h"
#include "driver/SensorDataFifo.h"
#include "driver/SpectrumDataFifo.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

using DeviceDriver::ConfigurationData;
using DeviceDriver::DriverCalculation;
using DeviceDriver::SensorData;
using DeviceDriver::SensorDataFifo;
using Utilities::Vector;

namespace {

constexpr unsigned long pixelCount = 128;
constexpr unsigned long wavelengthCount = 36;
constexpr unsigned long pixelsPerWavelength = 4;
constexpr unsigned long whiteRows = 100;
constexpr unsigned long stripLength = 2000;
constexpr long darkCounts = 1200;
constexpr float integrationTime = 0.0068f;

Vector<float> Filled(unsigned long size, float value)
{
    Vector<float> vector(size);
    for (unsigned long i = 0; i < size; ++i) {
        vector[i] = value;
    }
    return vector;
}

Vector<float> CubicLinearisation()
{
    Vector<float> coefficients(4);
    coefficients[0] = 0.0f;
    coefficients[1] = 1.0f;
    coefficients[2] = 1.2e-6f;
    coefficients[3] = 4.0e-12f;
    return coefficients;
}

// The wavelengths lie 3.5 pixels apart from pixel 1 on, and each folds 4 pixels.
ConfigurationData Calibration()
{
    ConfigurationData calibration("CalibrationData");
    calibration.SetFloatVector(1000, CubicLinearisation());
    calibration.SetFloatVector(1001, CubicLinearisation());
    Vector<long> first(wavelengthCount);
    Vector<long> count(wavelengthCount);
    for (unsigned long k = 0; k < wavelengthCount; ++k) {
        first[k] = static_cast<long>(1 + (k * 7) / 2);
        count[k] = static_cast<long>(pixelsPerWavelength);
    }
    calibration.SetU32Vector(1002, first);
    calibration.SetU32Vector(1003, count);
    calibration.SetFloatVector(1004, Filled(wavelengthCount * pixelsPerWavelength, 0.25f));
    calibration.SetFloatVector(1100, Filled(wavelengthCount, 0.9f));
    calibration.SetFloatVector(1101, Filled(wavelengthCount, 1.0e-3f));
    calibration.SetFloatVector(1102, Filled(wavelengthCount, 3.14159f));
    calibration.SetU32(1204, 40000);
    calibration.SetU32(1205, 2500);
    calibration.SetU32(1207, 60000);
    calibration.SetU32(1208, 60000);
    calibration.SetFloat(1213, 8.0f);
    calibration.SetFloat(1221, 0.0068f);
    calibration.SetFloat(1222, 4.0f);
    calibration.SetU32(3012, 129);
    return calibration;
}

// A lamp that is weak in the blue and strong in the red, as the white check expects of a tile.
double LampAtPixel(unsigned long pixel)
{
    const double wavelength = (static_cast<double>(pixel) - 2.5) / 3.5;
    if (wavelength < 2.5) {
        return 0.15;
    }
    return wavelength < 20.5 ? 1.0 : 1.5;
}

SensorData Measurement(double reflectance, unsigned long rows)
{
    Vector<Vector<long>> raw(rows);
    for (unsigned long row = 0; row < rows; ++row) {
        Vector<long> pixels(pixelCount);
        pixels[0] = darkCounts;
        for (unsigned long pixel = 1; pixel < pixelCount; ++pixel) {
            const double signal = 16000.0 * reflectance * LampAtPixel(pixel);
            pixels[pixel] = darkCounts + static_cast<long>(signal) + static_cast<long>(row % 7);
        }
        raw[row] = pixels;
    }
    SensorData sensor;
    sensor.SetGain(1);
    sensor.SetIntegrationTime(integrationTime);
    sensor.SetRaw(raw);
    return sensor;
}

// A scan handle whose calculation was calibrated on a tile with a white of a row per repeat.
class CalibratedScanHandle : public DeviceDriver::RemissionScanHandle {
public:
    CalibratedScanHandle()
    {
        calculation = Utilities::SmartPointer<DriverCalculation>(new DriverCalculation(Calibration()));
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
