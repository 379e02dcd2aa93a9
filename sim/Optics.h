#pragma once
// The optical bench of the virtual instrument: lamp, UV-cut filter, pixel wavelengths, sensor,
// the white tile, dark signal and non-linearity, and the factory matrix that folds the pixels into
// the 36 wavelengths 380..730 nm. The factory records are derived from these, so that a driver
// that follows the records recovers what lies under the aperture.
//
// Units: radiance in mW/(sr m^2 nm); signal in linear counts per second at gain 1. Gain 1 is the
// low gain; gain 0 is gainRatio times as sensitive.

#include <array>
#include <cstdint>
#include <vector>

#include "sim/SpectralTables.h"

namespace OrbelSim {

struct SpectralMatrix {
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> count;
    std::vector<float> coefficients;
};

class Optics {
public:
    static constexpr int pixels = 128;
    static constexpr int firstLivePixel = 1;
    static constexpr int lastLivePixel = 126;
    static constexpr int outputs = 36;
    static constexpr double lampKelvin = 3050.0;
    static constexpr double gainRatio = 8.0;
    // The level that the tile reaches at 0.0204 s and gain 1 (raw counts at the brightest pixel).
    static constexpr double tileRawPeak = 40000.0;
    static constexpr double tileIntegrationTime = 300 * 6.8e-5;
    // A display white of 200 cd/m^2 at 0.5 s, gain 1, peaks here: safely below saturation.
    static constexpr double displayWhiteRawPeak = 45000.0;
    // The converter's full scale: the wrap threshold of the MISC answer, the largest positive word.
    static constexpr std::uint16_t fullScale = 0xF000;

    explicit Optics(bool uvCut);

    static double Wavelength(int pixel);
    static double OutputWavelength(int output);
    bool UvCut() const { return uvCut; }

    // Radiance of a perfect white diffuser under the lamp, per pixel. The UV-cut filter sits in front
    // of the lamp, so it shapes this and leaves emission measurements alone.
    const std::vector<double>& LampRadiance() const { return lampRadiance; }
    // Linear counts per second at gain 1 per unit radiance, per pixel.
    const std::vector<double>& Responsivity() const { return responsivity; }
    const std::vector<double>& TileReflectance() const { return tilePixels; }
    const Spectrum36& TileRecord() const { return tileRecord; }
    const SpectralMatrix& Matrix() const { return matrix; }
    // Dense form of the matrix: row k holds the weight of each pixel for output k.
    const std::vector<std::vector<double>>& MatrixRows() const { return matrixRows; }
    std::vector<float> EmissionFactors() const;

    static const std::vector<float>& Linearisation(int gain);
    static double GainFactor(int gain);
    static double Dark(int gain, double integrationTime, int pixel);
    // The raw value that the sensor gives for a linear signal: the inverse of the linearisation.
    static double RawFromLinear(int gain, double linear);
    static double LinearFromRaw(int gain, double raw);

private:
    static double Planck(double nanometres);
    static double SensorShape(double nanometres);
    double FilterTransmission(double nanometres) const;
    static double TileShape(double nanometres);
    void BuildMatrix();
    double DisplayWhiteSensitivityPeak() const;
    double TileSignalPeakPerLampUnit() const;

    bool uvCut;
    std::vector<double> lampRadiance;
    std::vector<double> responsivity;
    std::vector<double> tilePixels;
    Spectrum36 tileRecord{};
    SpectralMatrix matrix;
    std::vector<std::vector<double>> matrixRows;
};

} // namespace OrbelSim
