#pragma once
// The line sensor: linear signal plus dark, optional noise, then the sensor's compression (the
// inverse of the factory linearisation) and the converter's full scale.

#include <array>
#include <cstdint>
#include <random>
#include <vector>

#include "sim/Optics.h"

namespace OrbelSim {

using RawPixels = std::array<std::uint16_t, Optics::pixels>;

class Sensor {
public:
    Sensor(const Optics& optics, bool noise, std::uint32_t seed);

    // radiance: per pixel, what reaches the sensor. Pixel 0 is masked and sees dark only; pixel 127
    // isn't read out and stays 0.
    RawPixels Read(const std::vector<double>& radiance, int gain, double integrationTime);

    static void AppendBlock(std::vector<std::uint8_t>& out, const RawPixels& pixels);

private:
    double Noise(double signal);

    const Optics& optics;
    bool noise;
    std::mt19937 random;
};

} // namespace OrbelSim
