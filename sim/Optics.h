#pragma once
// The optical bench of the virtual instrument: lamp, UV-cut filter, pixel wavelengths, sensor,
// the white tile, dark signal and non-linearity, and the factory matrix that folds the pixels into
// the 36 wavelengths 380..730 nm. The factory records are derived from these, so that a driver
// that follows the records recovers what lies under the aperture.
//
// Units: radiance in mW/(sr m^2 nm); signal in linear counts per second at gain 1. Gain 1 is the
// low gain; gain 0 is kGainRatio times as sensitive.

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
    static constexpr int kPixels = 128;
    static constexpr int kFirstLivePixel = 1;
    static constexpr int kLastLivePixel = 126;
    static constexpr int kOutputs = 36;
    static constexpr double kLampKelvin = 3050.0;
    static constexpr double kGainRatio = 8.0;
    // The level that the tile reaches at 0.0204 s and gain 1 (raw counts at the brightest pixel).
    static constexpr double kTileRawPeak = 40000.0;
    static constexpr double kTileIntegrationTime = 300 * 6.8e-5;
    // A display white of 200 cd/m^2 at 0.5 s, gain 1, peaks here: safely below saturation.
    static constexpr double kDisplayWhiteRawPeak = 45000.0;
    // The converter's full scale: the wrap threshold of the MISC answer, the largest positive word.
    static constexpr std::uint16_t kFullScale = 0xF000;

    explicit Optics(bool uvCut);

    static double Wavelength(int pixel);
    static double OutputWavelength(int output);
    bool UvCut() const { return uvCut_; }

    // Radiance of a perfect white diffuser under the lamp, per pixel. The UV-cut filter sits in front
    // of the lamp, so it shapes this and leaves emission measurements alone.
    const std::vector<double>& LampRadiance() const { return lampRadiance_; }
    // Linear counts per second at gain 1 per unit radiance, per pixel.
    const std::vector<double>& Responsivity() const { return responsivity_; }
    const std::vector<double>& TileReflectance() const { return tilePixels_; }
    const Spectrum36& TileRecord() const { return tileRecord_; }
    const SpectralMatrix& Matrix() const { return matrix_; }
    // Dense form of the matrix: row k holds the weight of each pixel for output k.
    const std::vector<std::vector<double>>& MatrixRows() const { return matrixRows_; }
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

    bool uvCut_;
    std::vector<double> lampRadiance_;
    std::vector<double> responsivity_;
    std::vector<double> tilePixels_;
    Spectrum36 tileRecord_{};
    SpectralMatrix matrix_;
    std::vector<std::vector<double>> matrixRows_;
};

} // namespace OrbelSim
