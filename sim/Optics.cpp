#include "sim/Optics.h"

#include <algorithm>
#include <cmath>

namespace OrbelSim {

namespace {

constexpr double kBandHalfWidth = 6.0;

const std::vector<float> kLinearisationGain1 = {0.0f, 1.0f, 1.2e-6f, 4.0e-12f};
const std::vector<float> kLinearisationGain0 = {0.0f, 1.0f, 1.6e-6f, 2.0e-12f};

} // namespace

Optics::Optics(bool uvCut)
    : uvCut_(uvCut), lampRadiance_(kPixels, 0.0), responsivity_(kPixels, 0.0), tilePixels_(kPixels, 0.0)
{
    for (int p = 0; p < kPixels; ++p) {
        const double nm = Wavelength(p);
        responsivity_[p] = SensorShape(nm);
        tilePixels_[p] = TileShape(nm);
        lampRadiance_[p] = FilterTransmission(nm) * Planck(nm) / Planck(550.0);
    }
    for (int k = 0; k < kOutputs; ++k) {
        tileRecord_[k] = static_cast<float>(TileShape(OutputWavelength(k)));
    }
    BuildMatrix();
    const double sensitivityScale =
        (LinearFromRaw(1, kDisplayWhiteRawPeak) - Dark(1, 0.5, 64)) / (0.5 * DisplayWhiteSensitivityPeak());
    for (double& r : responsivity_) {
        r *= sensitivityScale;
    }
    const double lampScale = 1.0 / TileSignalPeakPerLampUnit();
    for (double& l : lampRadiance_) {
        l *= lampScale;
    }
}

double Optics::Wavelength(int pixel)
{
    return 368.0 + 3.0 * pixel;
}

double Optics::OutputWavelength(int output)
{
    return 380.0 + 10.0 * output;
}

double Optics::Planck(double nanometres)
{
    const double metres = nanometres * 1e-9;
    return 1.0 / (std::pow(metres, 5) * (std::exp(1.4388e-2 / (metres * kLampKelvin)) - 1.0));
}

double Optics::SensorShape(double nanometres)
{
    const double x = (nanometres - 600.0) / 170.0;
    return std::exp(-x * x);
}

double Optics::FilterTransmission(double nanometres) const
{
    if (!uvCut_) {
        return 1.0;
    }
    // A little leaks below the edge, so that the tile never gives an exact zero there.
    return 0.02 + 0.98 / (1.0 + std::exp(-(nanometres - 410.0) / 4.0));
}

double Optics::TileShape(double nanometres)
{
    return 0.88 + 0.04 * (nanometres - 380.0) / 350.0;
}

void Optics::BuildMatrix()
{
    matrixRows_.assign(kOutputs, std::vector<double>(kPixels, 0.0));
    for (int k = 0; k < kOutputs; ++k) {
        std::vector<std::pair<int, double>> band;
        double total = 0.0;
        for (int p = kFirstLivePixel; p <= kLastLivePixel; ++p) {
            const double weight = 1.0 - std::fabs(Wavelength(p) - OutputWavelength(k)) / kBandHalfWidth;
            if (weight > 0.0) {
                band.emplace_back(p, weight);
                total += weight;
            }
        }
        matrix_.first.push_back(static_cast<std::uint32_t>(band.front().first));
        matrix_.count.push_back(static_cast<std::uint32_t>(band.size()));
        for (const auto& [pixel, weight] : band) {
            const float coefficient = static_cast<float>(weight / total);
            matrix_.coefficients.push_back(coefficient);
            matrixRows_[k][pixel] = coefficient;
        }
    }
}

std::vector<float> Optics::EmissionFactors() const
{
    std::vector<float> factors;
    for (int k = 0; k < kOutputs; ++k) {
        double folded = 0.0;
        for (int p = 0; p < kPixels; ++p) {
            folded += matrixRows_[k][p] * responsivity_[p];
        }
        factors.push_back(static_cast<float>(1.0 / folded));
    }
    return factors;
}

double Optics::DisplayWhiteSensitivityPeak() const
{
    const Spectrum36& white = SpectralTables::Displays().front().values;
    double peak = 0.0;
    for (int k = 0; k < kOutputs; ++k) {
        const double nm = OutputWavelength(k);
        peak = std::max(peak, SensorShape(nm) * white[k]);
    }
    return peak;
}

double Optics::TileSignalPeakPerLampUnit() const
{
    int brightest = kFirstLivePixel;
    for (int p = kFirstLivePixel; p <= kLastLivePixel; ++p) {
        if (responsivity_[p] * lampRadiance_[p] * tilePixels_[p] >
            responsivity_[brightest] * lampRadiance_[brightest] * tilePixels_[brightest]) {
            brightest = p;
        }
    }
    const double wanted = LinearFromRaw(1, kTileRawPeak) - Dark(1, kTileIntegrationTime, brightest);
    const double perUnit =
        kTileIntegrationTime * responsivity_[brightest] * lampRadiance_[brightest] * tilePixels_[brightest];
    return perUnit / wanted;
}

const std::vector<float>& Optics::Linearisation(int gain)
{
    return gain == 0 ? kLinearisationGain0 : kLinearisationGain1;
}

double Optics::GainFactor(int gain)
{
    return gain == 0 ? kGainRatio : 1.0;
}

double Optics::Dark(int gain, double integrationTime, int pixel)
{
    const double level = gain == 0 ? 1400.0 + 1600.0 * integrationTime : 1150.0 + 200.0 * integrationTime;
    return level * (1.0 + 0.03 * std::sin(0.7 * pixel));
}

double Optics::LinearFromRaw(int gain, double raw)
{
    const std::vector<float>& c = Linearisation(gain);
    double y = c.back();
    for (std::size_t i = c.size() - 1; i-- > 0;) {
        y = raw * y + c[i];
    }
    return y;
}

double Optics::RawFromLinear(int gain, double linear)
{
    const std::vector<float>& c = Linearisation(gain);
    double x = linear;
    for (int iteration = 0; iteration < 30; ++iteration) {
        double slope = 0.0;
        for (std::size_t i = c.size() - 1; i >= 1; --i) {
            slope = slope * x + static_cast<double>(i) * c[i];
        }
        const double step = (LinearFromRaw(gain, x) - linear) / slope;
        x -= step;
        if (std::fabs(step) < 1e-9) {
            break;
        }
    }
    return x;
}

} // namespace OrbelSim
