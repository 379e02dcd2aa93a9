#include "bench/SyntheticSensor.h"

#include "utilities/Vector.h"

namespace OrbelBench {

using DeviceDriver::ConfigurationData;
using DeviceDriver::SensorData;
using Utilities::Vector;

namespace {

constexpr unsigned long pixelCount = 128;
constexpr unsigned long wavelengthCount = 36;
constexpr unsigned long pixelsPerWavelength = 4;
constexpr long darkCounts = 1200;

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

// A lamp that is weak in the blue and strong in the red, as the white check expects of a tile.
double LampAtPixel(unsigned long pixel)
{
    const double wavelength = (static_cast<double>(pixel) - 2.5) / 3.5;
    if (wavelength < 2.5) {
        return 0.15;
    }
    return wavelength < 20.5 ? 1.0 : 1.5;
}

}

// The wavelengths lie 3.5 pixels apart from pixel 1 on, and each folds 4 pixels.
ConfigurationData SyntheticSensor::Calibration()
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

SensorData SyntheticSensor::Measurement(double reflectance, unsigned long rows, float integrationTime)
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

}
