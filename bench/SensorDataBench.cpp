#include <benchmark/benchmark.h>

#include "driver/SensorData.h"
#include "utilities/Vector.h"

using DeviceDriver::SensorData;
using Utilities::Vector;

namespace {

constexpr unsigned long pixelCount = 128;
constexpr unsigned long rowCount = 4;
constexpr unsigned long wavelengthCount = 36;

// A measurement of four repeats over the 128 pixels, at levels a lit tile gives.
SensorData FourRowMeasurement()
{
    Vector<Vector<long>> raw(rowCount);
    for (unsigned long row = 0; row < rowCount; ++row) {
        Vector<long> pixels(pixelCount);
        for (unsigned long pixel = 0; pixel < pixelCount; ++pixel) {
            pixels[pixel] = static_cast<long>(1200 + (pixel * 331 + row * 17) % 38000);
        }
        raw[row] = pixels;
    }
    SensorData sensor;
    sensor.SetGain(1);
    sensor.SetIntegrationTime(0.0204f);
    sensor.SetRaw(raw);
    return sensor;
}

Vector<float> Polynomial()
{
    Vector<float> coefficients(4);
    coefficients[0] = 12.5f;
    coefficients[1] = 0.98f;
    coefficients[2] = 1.5e-7f;
    coefficients[3] = 2.0e-12f;
    return coefficients;
}

// The wavelengths lie about 3.5 pixels apart from pixel 1 on; each takes 4 pixels.
struct Matrix {
    Vector<long> first{wavelengthCount};
    Vector<long> count{wavelengthCount};
    Vector<float> coefficients{wavelengthCount * 4};
};

Matrix SpectralMatrix()
{
    Matrix matrix;
    for (unsigned long k = 0; k < wavelengthCount; ++k) {
        matrix.first[k] = static_cast<long>(1 + (k * 7) / 2);
        matrix.count[k] = 4;
    }
    for (unsigned long i = 0; i < matrix.coefficients.Size(); ++i) {
        matrix.coefficients[i] = 0.1f + 0.05f * static_cast<float>(i % 4);
    }
    return matrix;
}

// From raw counts to wavelengths, as every sample takes it, the copy of the fresh measurement
// included.
void BM_SensorDataMeanLinearizeMatrix(benchmark::State& state)
{
    const SensorData measurement = FourRowMeasurement();
    const Vector<float> polynomial = Polynomial();
    const Matrix matrix = SpectralMatrix();
    for (auto _ : state) {
        SensorData sensor(measurement);
        sensor.Mean();
        sensor.Linearize(polynomial);
        sensor.MatrixMultiply(matrix.first, matrix.count, matrix.coefficients);
        benchmark::DoNotOptimize(sensor.Load()[wavelengthCount - 1]);
    }
}
BENCHMARK(BM_SensorDataMeanLinearizeMatrix)->Unit(benchmark::kMicrosecond);

}
