#include "sim/Optics.h"

#include <algorithm>
#include <cmath>

namespace OrbelSim {

namespace {

constexpr double bandHalfWidth = 6.0;

const std::vector<float> linearisationGain1 = {0.0f, 1.0f, 1.2e-6f, 4.0e-12f};
const std::vector<float> linearisationGain0 = {0.0f, 1.0f, 1.6e-6f, 2.0e-12f};

} // namespace

Optics::Optics(bool uvCut) : uvCut(uvCut), lampRadiance(pixels, 0.0), responsivity(pixels, 0.0), tilePixels(pixels, 0.0)
{
    for (int p = 0; p < pixels; ++p) {
        const double nm = Wavelength(p);
        responsivity[p] = SensorShape(nm);
        tilePixels[p] = TileShape(nm);
        lampRadiance[p] = FilterTransmission(nm) * Planck(nm) / Planck(550.0);
    }
    for (int k = 0; k < outputs; ++k) {
        tileRecord[k] = static_cast<float>(TileShape(OutputWavelength(k)));
    }
    BuildMatrix();
    const double sensitivityScale =
        (LinearFromRaw(1, displayWhiteRawPeak) - Dark(1, 0.5, 64)) / (0.5 * DisplayWhiteSensitivityPeak());
    for (double& r : responsivity) {
        r *= sensitivityScale;
    }
    const double lampScale = 1.0 / TileSignalPeakPerLampUnit();
    for (double& l : lampRadiance) {
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
    return 1.0 / (std::pow(metres, 5) * (std::exp(1.4388e-2 / (metres * lampKelvin)) - 1.0));
}

double Optics::SensorShape(double nanometres)
{
    const double x = (nanometres - 600.0) / 170.0;
    return std::exp(-x * x);
}

double Optics::FilterTransmission(double nanometres) const
{
    if (!uvCut) {
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
    matrixRows.assign(outputs, std::vector<double>(pixels, 0.0));
    for (int k = 0; k < outputs; ++k) {
        std::vector<std::pair<int, double>> band;
        double total = 0.0;
        for (int p = firstLivePixel; p <= lastLivePixel; ++p) {
            const double weight = 1.0 - std::fabs(Wavelength(p) - OutputWavelength(k)) / bandHalfWidth;
            if (weight > 0.0) {
                band.emplace_back(p, weight);
                total += weight;
            }
        }
        matrix.first.push_back(static_cast<std::uint32_t>(band.front().first));
        matrix.count.push_back(static_cast<std::uint32_t>(band.size()));
        for (const auto& [pixel, weight] : band) {
            const float coefficient = static_cast<float>(weight / total);
            matrix.coefficients.push_back(coefficient);
            matrixRows[k][pixel] = coefficient;
        }
    }
}

std::vector<float> Optics::EmissionFactors() const
{
    std::vector<float> factors;
    for (int k = 0; k < outputs; ++k) {
        double folded = 0.0;
        for (int p = 0; p < pixels; ++p) {
            folded += matrixRows[k][p] * responsivity[p];
        }
        factors.push_back(static_cast<float>(1.0 / folded));
    }
    return factors;
}

double Optics::DisplayWhiteSensitivityPeak() const
{
    const Spectrum36& white = SpectralTables::Displays().front().values;
    double peak = 0.0;
    for (int k = 0; k < outputs; ++k) {
        const double nm = OutputWavelength(k);
        peak = std::max(peak, SensorShape(nm) * white[k]);
    }
    return peak;
}

double Optics::TileSignalPeakPerLampUnit() const
{
    int brightest = firstLivePixel;
    for (int p = firstLivePixel; p <= lastLivePixel; ++p) {
        if (responsivity[p] * lampRadiance[p] * tilePixels[p] >
            responsivity[brightest] * lampRadiance[brightest] * tilePixels[brightest]) {
            brightest = p;
        }
    }
    const double wanted = LinearFromRaw(1, tileRawPeak) - Dark(1, tileIntegrationTime, brightest);
    const double perUnit =
        tileIntegrationTime * responsivity[brightest] * lampRadiance[brightest] * tilePixels[brightest];
    return perUnit / wanted;
}

const std::vector<float>& Optics::Linearisation(int gain)
{
    return gain == 0 ? linearisationGain0 : linearisationGain1;
}

double Optics::GainFactor(int gain)
{
    return gain == 0 ? gainRatio : 1.0;
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
