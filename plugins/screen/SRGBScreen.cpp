#include "plugins/screen/SRGBScreen.h"

#include <algorithm>
#include <cmath>

namespace Plugins {

namespace {

constexpr double whiteX = 0.95047;
constexpr double whiteY = 1.0;
constexpr double whiteZ = 1.08883;

constexpr double toLinear[3][3] = {
    {3.2406, -1.5372, -0.4986},
    {-0.9689, 1.8758, 0.0415},
    {0.0557, -0.2040, 1.0570},
};

}

CMetry::HvColorVector SRGBScreen::ConvertLabToRGB(const CMetry::HvColorVector& vector)
{
    const double fy = (vector[0] + 16.0) / 116.0;
    const double fx = fy + vector[1] / 500.0;
    const double fz = fy - vector[2] / 200.0;
    const double xyz[3] = {whiteX * LabToXYZFactor(fx), whiteY * LabToXYZFactor(fy), whiteZ * LabToXYZFactor(fz)};
    float channels[3];
    for (int row = 0; row < 3; ++row) {
        const double linear = toLinear[row][0] * xyz[0] + toLinear[row][1] * xyz[1] + toLinear[row][2] * xyz[2];
        channels[row] = Encode(linear);
    }
    return CMetry::HvColorVector(channels[0], channels[1], channels[2], vector.GetConditions());
}

// The inverse of the cube root with its linear part near black.
double SRGBScreen::LabToXYZFactor(double value)
{
    constexpr double epsilon = 6.0 / 29.0;
    return value > epsilon ? value * value * value : 3.0 * epsilon * epsilon * (value - 4.0 / 29.0);
}

float SRGBScreen::Encode(double linear)
{
    const double clipped = std::clamp(linear, 0.0, 1.0);
    const double encoded = clipped <= 0.0031308 ? 12.92 * clipped : 1.055 * std::pow(clipped, 1.0 / 2.4) - 0.055;
    return static_cast<float>(std::lround(encoded * 255.0));
}

}
