#include "cmetry/CorrelatedColorTemperature.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace CMetry {

namespace {

// Second radiation constant in nm K (ITS-90, as CIE 15:2004 uses it).
constexpr double secondRadiationConstant = 1.4388e7;
// Ohno's first table: 1 % steps. Each cascade pass spreads ten steps over the two intervals
// around the nearest point; after five passes the neighbours lie 3e-6 of T apart.
constexpr double coarseRatio = 1.01;
constexpr int cascadeSteps = 10;
constexpr int cascadePasses = 5;
// Ohno 2014: the triangular solution close to the locus, the parabolic one beyond.
constexpr double triangularLimit = 0.002;

struct Point {
    double temperature;
    EmissionWeights::Uv uv;
    double distance;
};

Point PointAt(double temperature, const EmissionWeights::Uv& target)
{
    const EmissionWeights::Uv uv = CorrelatedColorTemperature::LocusAt(temperature);
    return {temperature, uv, std::hypot(target.u - uv.u, target.v - uv.v)};
}

// Index of the nearest point, kept off the ends so that it has a neighbour on each side.
std::size_t Nearest(const std::vector<Point>& table)
{
    const auto nearest = std::min_element(
        table.begin(), table.end(), [](const Point& a, const Point& b) { return a.distance < b.distance; });
    return static_cast<std::size_t>(nearest - table.begin());
}

std::vector<Point> GeometricTable(double first, double last, int steps, const EmissionWeights::Uv& target)
{
    std::vector<Point> table;
    const double ratio = std::pow(last / first, 1.0 / steps);
    for (int i = 0; i <= steps; ++i) {
        table.push_back(PointAt(first * std::pow(ratio, i), target));
    }
    return table;
}

double SignOfSide(const EmissionWeights::Uv& target, double temperature)
{
    return target.v >= CorrelatedColorTemperature::LocusAt(temperature).v ? 1.0 : -1.0;
}

// Ohno 2014, triangular solution.
CorrelatedColorTemperature::Result Triangular(const Point& low, const Point& high, const EmissionWeights::Uv& target)
{
    const double length = std::hypot(high.uv.u - low.uv.u, high.uv.v - low.uv.v);
    const double x = (low.distance * low.distance - high.distance * high.distance + length * length) / (2.0 * length);
    const double temperature = low.temperature + (high.temperature - low.temperature) * x / length;
    const double duv = std::sqrt(std::max(0.0, low.distance * low.distance - x * x));
    return {temperature, SignOfSide(target, temperature) * duv};
}

// Ohno 2014, parabolic solution through the three distances.
CorrelatedColorTemperature::Result Parabolic(
    const Point& low, const Point& middle, const Point& high, const EmissionWeights::Uv& target)
{
    const double t1 = low.temperature;
    const double t2 = middle.temperature;
    const double t3 = high.temperature;
    const double d1 = low.distance;
    const double d2 = middle.distance;
    const double d3 = high.distance;
    const double denominator = (t3 - t2) * (t1 - t3) * (t2 - t1);
    const double a = (t1 * (d3 - d2) + t2 * (d1 - d3) + t3 * (d2 - d1)) / denominator;
    const double b = -(t1 * t1 * (d3 - d2) + t2 * t2 * (d1 - d3) + t3 * t3 * (d2 - d1)) / denominator;
    const double c = -(d1 * (t3 - t2) * t2 * t3 + d2 * (t1 - t3) * t1 * t3 + d3 * (t2 - t1) * t1 * t2) / denominator;
    const double temperature = -b / (2.0 * a);
    return {temperature, SignOfSide(target, temperature) * (a * temperature * temperature + b * temperature + c)};
}

}

EmissionWeights::Values CorrelatedColorTemperature::BlackBody(double temperature)
{
    EmissionWeights::Values values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const double wavelength = EmissionWeights::firstWavelength + EmissionWeights::step * static_cast<double>(index);
        // Planck's law, without the first radiation constant, which cancels in chromaticity.
        values[index] =
            std::pow(wavelength / 100.0, -5.0) / std::expm1(secondRadiationConstant / (wavelength * temperature));
    }
    return values;
}

EmissionWeights::Uv CorrelatedColorTemperature::LocusAt(double temperature)
{
    return *EmissionWeights::UvOf(EmissionWeights::XyzOf(BlackBody(temperature)));
}

std::optional<CorrelatedColorTemperature::Result> CorrelatedColorTemperature::Of(
    const EmissionWeights::Values& emission)
{
    const std::optional<EmissionWeights::Uv> uv = EmissionWeights::UvOf(EmissionWeights::XyzOf(emission));
    return uv ? OfUv(*uv) : std::nullopt;
}

std::optional<CorrelatedColorTemperature::Result> CorrelatedColorTemperature::OfUv(const EmissionWeights::Uv& uv)
{
    const int coarseSteps = static_cast<int>(std::ceil(std::log(highest / lowest) / std::log(coarseRatio))) + 2;
    std::vector<Point> table = GeometricTable(
        lowest / coarseRatio, lowest / coarseRatio * std::pow(coarseRatio, coarseSteps), coarseSteps, uv);
    std::size_t nearest = Nearest(table);
    if (nearest == 0 || nearest == table.size() - 1) {
        return std::nullopt;
    }
    for (int pass = 0; pass < cascadePasses; ++pass) {
        table = GeometricTable(table[nearest - 1].temperature, table[nearest + 1].temperature, cascadeSteps, uv);
        nearest = std::clamp<std::size_t>(Nearest(table), 1, table.size() - 2);
    }
    const Point& low = table[nearest - 1];
    const Point& high = table[nearest + 1];
    Result result = Triangular(low, high, uv);
    if (std::fabs(result.duv) >= triangularLimit) {
        result = Parabolic(low, table[nearest], high, uv);
    }
    if (result.temperature < lowest - 0.5 || result.temperature > highest + 0.5) {
        return std::nullopt;
    }
    return result;
}

}
