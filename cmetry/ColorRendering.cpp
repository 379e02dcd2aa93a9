#include "cmetry/ColorRendering.h"

#include <cmath>

#include "cmetry/CieTables.h"
#include "cmetry/CorrelatedColorTemperature.h"
#include "cmetry/TestColourSamples.h"

namespace CMetry {

namespace {

constexpr int generalSamples = 8;

struct Colour {
    double u;
    double v;
    double y; // with the light's Y = 100
};

// The value of a table at a data point of the grid, which all its tables cover.
double AtDataPoint(const CieTables::Table& table, std::size_t index)
{
    const std::size_t wavelength = EmissionWeights::firstWavelength + EmissionWeights::step * index;
    return table.values[(wavelength - table.minimum) / table.step];
}

EmissionWeights::Values Reflected(const EmissionWeights::Values& light, int sample)
{
    EmissionWeights::Values values = light;
    for (std::size_t index = 0; index < values.size(); ++index) {
        values[index] *= AtDataPoint(TestColourSamples::Sample[sample], index);
    }
    return values;
}

Colour ColourOf(const EmissionWeights::Values& values, double lightY)
{
    const EmissionWeights::Xyz xyz = EmissionWeights::XyzOf(values);
    // Every sample reflects some of every band, so a light with chromaticity gives them one too.
    const EmissionWeights::Uv uv = *EmissionWeights::UvOf(xyz);
    return {uv.u, uv.v, 100.0 * xyz.y / lightY};
}

// The light first, then the fourteen samples under it.
std::array<Colour, 15> ColoursUnder(const EmissionWeights::Values& light)
{
    const double lightY = EmissionWeights::XyzOf(light).y;
    std::array<Colour, 15> colours;
    colours[0] = ColourOf(light, lightY);
    for (int sample = 0; sample < TestColourSamples::count; ++sample) {
        colours[static_cast<std::size_t>(sample) + 1] = ColourOf(Reflected(light, sample), lightY);
    }
    return colours;
}

// CIE 13.3-1995: c = (4 - u - 10 v) / v, d = (1.708 v + 0.404 - 1.481 u) / v.
double C(const Colour& colour)
{
    return (4.0 - colour.u - 10.0 * colour.v) / colour.v;
}

double D(const Colour& colour)
{
    return (1.708 * colour.v + 0.404 - 1.481 * colour.u) / colour.v;
}

// CIE 13.3-1995, von Kries adaptation of a sample under the test light to the reference light.
Colour Adapted(const Colour& sample, const Colour& test, const Colour& reference)
{
    const double c = C(reference) / C(test) * C(sample);
    const double d = D(reference) / D(test) * D(sample);
    const double denominator = 16.518 + 1.481 * c - d;
    return {(10.872 + 0.404 * c - 4.0 * d) / denominator, 5.520 / denominator, sample.y};
}

struct Uvw {
    double u;
    double v;
    double w;
};

// CIE 1964 U*V*W*: W* = 25 Y^(1/3) - 17, U* = 13 W* (u - u0), V* = 13 W* (v - v0).
Uvw UvwOf(const Colour& colour, const Colour& white)
{
    const double w = 25.0 * std::cbrt(colour.y) - 17.0;
    return {13.0 * w * (colour.u - white.u), 13.0 * w * (colour.v - white.v), w};
}

}

// CIE 15:2004 daylight: chromaticity x_D from the temperature, y_D = -3 x_D^2 + 2.87 x_D - 0.275,
// S = S0 + M1 S1 + M2 S2.
EmissionWeights::Values ColorRendering::Daylight(double temperature)
{
    const double t = temperature;
    const double x = t <= 7000.0 ? -4.607e9 / (t * t * t) + 2.9678e6 / (t * t) + 99.11 / t + 0.244063
                                 : -2.0064e9 / (t * t * t) + 1.9018e6 / (t * t) + 247.48 / t + 0.23704;
    const double y = -3.0 * x * x + 2.87 * x - 0.275;
    const double m = 0.0241 + 0.2562 * x - 0.7341 * y;
    const double m1 = (-1.3515 - 1.7703 * x + 5.9114 * y) / m;
    const double m2 = (0.03 - 31.4424 * x + 30.0717 * y) / m;
    EmissionWeights::Values values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        values[index] = AtDataPoint(CieTables::Daylight[0], index) + m1 * AtDataPoint(CieTables::Daylight[1], index) +
            m2 * AtDataPoint(CieTables::Daylight[2], index);
    }
    return values;
}

// CIE 13.3-1995: Ri = 100 - 4.6 dE of U*V*W*, Ra the mean of R1 to R8.
std::optional<ColorRendering::Result> ColorRendering::Of(const EmissionWeights::Values& emission)
{
    const std::optional<CorrelatedColorTemperature::Result> cct = CorrelatedColorTemperature::Of(emission);
    if (!cct) {
        return std::nullopt;
    }
    const EmissionWeights::Values reference = cct->temperature < daylightFrom
        ? CorrelatedColorTemperature::BlackBody(cct->temperature)
        : Daylight(cct->temperature);
    const std::array<Colour, 15> test = ColoursUnder(emission);
    const std::array<Colour, 15> standard = ColoursUnder(reference);
    Result result{cct->temperature, cct->duv, 0.0, {}};
    for (std::size_t sample = 0; sample < result.special.size(); ++sample) {
        const Uvw seen = UvwOf(Adapted(test[sample + 1], test[0], standard[0]), standard[0]);
        const Uvw meant = UvwOf(standard[sample + 1], standard[0]);
        const double difference = std::sqrt(
            std::pow(seen.u - meant.u, 2.0) + std::pow(seen.v - meant.v, 2.0) + std::pow(seen.w - meant.w, 2.0));
        result.special[sample] = 100.0 - 4.6 * difference;
        if (sample < generalSamples) {
            result.ra += result.special[sample] / generalSamples;
        }
    }
    return result;
}

}
