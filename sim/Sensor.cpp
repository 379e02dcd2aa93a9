#include "sim/Sensor.h"

#include <algorithm>
#include <cmath>

namespace OrbelSim {

Sensor::Sensor(const Optics& optics, bool noise, std::uint32_t seed) : optics(optics), noise(noise), random(seed) { }

double Sensor::Noise(double signal)
{
    if (!noise) {
        return 0.0;
    }
    // Read noise of 3 counts and shot noise.
    std::normal_distribution<double> normal(0.0, std::sqrt(9.0 + std::max(signal, 0.0) / 25.0));
    return normal(random);
}

RawPixels Sensor::Read(const std::vector<double>& radiance, int gain, double integrationTime)
{
    RawPixels raw{};
    for (int p = 0; p <= Optics::lastLivePixel; ++p) {
        const double signal = p < Optics::firstLivePixel
            ? 0.0
            : Optics::GainFactor(gain) * integrationTime * optics.Responsivity()[p] * radiance[p];
        const double linear = Optics::Dark(gain, integrationTime, p) + signal + Noise(signal);
        const double value = std::round(Optics::RawFromLinear(gain, std::max(linear, 0.0)));
        raw[p] = static_cast<std::uint16_t>(std::clamp(value, 0.0, static_cast<double>(Optics::fullScale)));
    }
    return raw;
}

void Sensor::AppendBlock(std::vector<std::uint8_t>& out, const RawPixels& pixels)
{
    for (std::uint16_t word : pixels) {
        out.push_back(static_cast<std::uint8_t>(word >> 8));
        out.push_back(static_cast<std::uint8_t>(word));
    }
}

} // namespace OrbelSim
