#include "cmetry/EmissionWeights.h"

#include "cmetry/CieTables.h"

namespace CMetry {

namespace {

using Weights = std::array<EmissionWeights::Values, 3>;

double TableValue(const CieTables::Table& table, int wavelength)
{
    if (wavelength < table.minimum || wavelength > table.maximum) {
        return 0.0;
    }
    return table.values[static_cast<std::size_t>((wavelength - table.minimum) / table.step)];
}

// Integration at 1 nm over the whole table with the spectrum linear between its data points and
// constant beyond its ends: each nanometre adds to the weights of the two points around it.
Weights TwoDegree()
{
    Weights weights{};
    const int last = EmissionWeights::firstWavelength + EmissionWeights::step * (EmissionWeights::count - 1);
    for (int axis = 0; axis < 3; ++axis) {
        const CieTables::Table& table = CieTables::Observer[0][axis];
        for (int wavelength = table.minimum; wavelength <= table.maximum; ++wavelength) {
            const double matching = TableValue(table, wavelength);
            if (wavelength <= EmissionWeights::firstWavelength || wavelength >= last) {
                weights[axis][wavelength <= EmissionWeights::firstWavelength ? 0 : EmissionWeights::count - 1] +=
                    matching;
                continue;
            }
            const int offset = wavelength - EmissionWeights::firstWavelength;
            const int below = offset / EmissionWeights::step;
            const double fraction = static_cast<double>(offset % EmissionWeights::step) / EmissionWeights::step;
            weights[axis][below] += matching * (1.0 - fraction);
            weights[axis][below + 1] += matching * fraction;
        }
    }
    return weights;
}

double Dot(const EmissionWeights::Values& weights, const EmissionWeights::Values& values)
{
    double sum = 0.0;
    for (std::size_t index = 0; index < values.size(); ++index) {
        sum += weights[index] * values[index];
    }
    return sum;
}

}

EmissionWeights::Xyz EmissionWeights::XyzOf(const Values& values)
{
    static const Weights weights = TwoDegree();
    return {Dot(weights[0], values), Dot(weights[1], values), Dot(weights[2], values)};
}

// CIE 1960 UCS: u = 4X / (X + 15Y + 3Z), v = 6Y / (X + 15Y + 3Z).
std::optional<EmissionWeights::Uv> EmissionWeights::UvOf(const Xyz& xyz)
{
    const double denominator = xyz.x + 15.0 * xyz.y + 3.0 * xyz.z;
    if (!(denominator > 0.0)) {
        return std::nullopt;
    }
    return Uv{4.0 * xyz.x / denominator, 6.0 * xyz.y / denominator};
}

}
