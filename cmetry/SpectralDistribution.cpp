#include "cmetry/SpectralDistribution.h"

#include <cmath>
#include <utility>

#include "cmetry/HvSpectrum.h"
#include "cmetry/LagrangeCoefficients.h"
#include "cmetry/TranslatedMessage.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionNullpointer.h"

namespace CMetry {

using Utilities::ExceptionCalculationProblem;

namespace {

constexpr uint16_t daylightReferenceWavelength = 560;

ExceptionCalculationProblem UnsupportedIllumination()
{
    return ExceptionCalculationProblem(TranslatedMessage("Unsupported Illumination type"));
}

const CieTables::Table& FluorescentTable(uint8_t fValue)
{
    if (fValue < 1 || fValue > 12) {
        throw UnsupportedIllumination();
    }
    return CieTables::Fluorescent[fValue - 1];
}

const CieTables::Table& IlluminantTable(const IlluminationTYPE& illumination)
{
    switch (illumination.GetType()) {
    case Illumination::A:
    case Illumination::B:
    case Illumination::C:
    case Illumination::D75:
    case Illumination::D65:
    case Illumination::D55:
    case Illumination::D50:
        return CieTables::Illuminant[static_cast<int>(illumination.GetType())];
    case Illumination::F2:
        return FluorescentTable(2);
    case Illumination::F7:
        return FluorescentTable(7);
    case Illumination::F11:
        return FluorescentTable(11);
    case Illumination::F:
        return FluorescentTable(illumination.GetFValue());
    case Illumination::S0:
    case Illumination::S1:
    case Illumination::S2:
        return CieTables::Daylight[static_cast<int>(illumination.GetType()) - static_cast<int>(Illumination::S0)];
    default:
        throw UnsupportedIllumination();
    }
}

// The s points of one interval from the entries of its nodes: products in double precision,
// sums in float.
template<class RowOf>
void FillInterval(RowOf rowOf, uint16_t nodeCount, const float* nodes, float* points, uint16_t step)
{
    for (uint16_t i = 0; i < step; ++i) {
        float sum = 0.0f;
        for (uint16_t node = 0; node < nodeCount; ++node) {
            sum += static_cast<double>(rowOf(node)[i]) * nodes[node];
        }
        points[i] = sum;
    }
}

// The rounded factors M1, M2 of the daylight components for a colour temperature.
std::pair<double, double> DaylightFactors(int16_t temperature)
{
    const double corrected = temperature * 1.4388 / 1.438;
    const double t2 = corrected * corrected;
    const double t3 = t2 * corrected;
    const double x = corrected < 7000.0 ? -4.607e9 / t3 + 2.9678e6 / t2 + 99.11 / corrected + 0.244063
                                        : -2.0064e9 / t3 + 1.9018e6 / t2 + 247.48 / corrected + 0.23704;
    const double y = -3.0 * x * x + 2.87 * x - 0.275;
    const double m = 0.0241 + 0.2562 * x - 0.7341 * y;
    const double m1 = (-1.3515 - 1.7703 * x + 5.9114 * y) / m;
    const double m2 = (0.03 - 31.4424 * x + 30.0717 * y) / m;
    return {std::floor(m1 * 1000.0 + 0.5) / 1000.0, std::floor(m2 * 1000.0 + 0.5) / 1000.0};
}

}

SpectralDistribution::SpectralDistribution() : step(0), maximum(0), minimum(0) { }

SpectralDistribution::SpectralDistribution(uint16_t minimum, uint16_t maximum, uint16_t step, std::vector<float> values)
    : step(step), maximum(maximum), minimum(minimum), values(std::move(values))
{
}

SpectralDistribution::SpectralDistribution(const CieTables::Table& table)
    : step(table.step), maximum(table.maximum), minimum(table.minimum), values(table.values.begin(), table.values.end())
{
}

SpectralDistribution SpectralDistribution::GetIlluminantDistribution(const IlluminationTYPE& illumination)
{
    return SpectralDistribution(IlluminantTable(illumination));
}

SpectralDistribution SpectralDistribution::GetObserverDistribution(Observer observer, uint16_t axis)
{
    if (observer != Observer::TwoDegree && observer != Observer::TenDegree) {
        throw ExceptionCalculationProblem(TranslatedMessage("Unsupported Observer type"));
    }
    if (axis > 2) {
        throw Utilities::ExceptionNullpointer(TranslatedMessage("Invalid Axis"));
    }
    return SpectralDistribution(CieTables::Observer[static_cast<int>(observer)][axis]);
}

SpectralDistribution SpectralDistribution::GetDaylightDistribution(int16_t temperature)
{
    if (temperature <= 0) {
        throw UnsupportedIllumination();
    }
    const auto [m1, m2] = DaylightFactors(temperature);
    const CieTables::Table& s0 = CieTables::Daylight[0];
    const CieTables::Table& s1 = CieTables::Daylight[1];
    const CieTables::Table& s2 = CieTables::Daylight[2];
    std::vector<double> daylight(s0.values.size());
    for (std::size_t index = 0; index < daylight.size(); ++index) {
        daylight[index] = s0.values[index] + m1 * s1.values[index] + m2 * s2.values[index];
    }
    const double scale = 100.0 / daylight[(daylightReferenceWavelength - s0.minimum) / s0.step];
    std::vector<float> values(daylight.size());
    for (std::size_t index = 0; index < daylight.size(); ++index) {
        values[index] = static_cast<float>(daylight[index] * scale);
    }
    return SpectralDistribution(s0.minimum, s0.maximum, s0.step, std::move(values));
}

SpectralDistribution SpectralDistribution::FromSpectrum(const HvSpectrum& spectrum)
{
    const uint16_t count = spectrum.GetNumberOfValues();
    const uint16_t first = HvMeasureConditions::wavelengthMinimum;
    const uint16_t last = HvMeasureConditions::wavelengthMaximum;
    return SpectralDistribution(first, last, static_cast<uint16_t>((last - first) / (count - 1)),
        std::vector<float>(spectrum.GetValues(), spectrum.GetValues() + count));
}

float SpectralDistribution::ValueAt(uint16_t wavelength) const
{
    if (step == 0 || wavelength < minimum || wavelength > maximum) {
        return 0.0f;
    }
    return values[(wavelength - minimum) / step];
}

// c = (last - first) / s + 1 entries E at first, first + s, ...
std::vector<float> SpectralDistribution::ExtendedOnOwnGrid(uint16_t first, uint16_t last) const
{
    std::vector<float> extended((last - first) / step + 1);
    for (std::size_t index = 0; index < extended.size(); ++index) {
        const int wavelength = first + static_cast<int>(index) * step;
        if (wavelength < minimum) {
            extended[index] = values.front();
        } else if (wavelength > maximum) {
            extended[index] = values.back();
        } else {
            extended[index] = values[static_cast<std::size_t>((wavelength - minimum) / step)];
        }
    }
    return extended;
}

SpectralDistribution SpectralDistribution::InterpolatedTo1nm(uint16_t first, uint16_t last) const
{
    if (step == 0 || values.empty()) {
        throw UnsupportedIllumination();
    }
    const std::vector<float> extended = ExtendedOnOwnGrid(first, last);
    const LagrangeCoefficients lagrange(step);
    const std::size_t c = extended.size();
    std::vector<float> interpolated(last - first + 1);
    auto fill = [&](auto rowOf, uint16_t nodeCount, std::size_t firstNode, std::size_t firstPosition) {
        FillInterval(rowOf, nodeCount, &extended[firstNode], &interpolated[firstPosition], step);
    };
    fill([&](uint16_t node) { return lagrange.GetL3a(node); }, 3, 0, 0);
    for (std::size_t k = 0; k + 4 <= c; ++k) {
        fill([&](uint16_t node) { return lagrange.GetL4(node); }, 4, k, step * (k + 1));
    }
    fill([&](uint16_t node) { return lagrange.GetL3b(node); }, 3, c - 3, step * (c - 2));
    interpolated[step * (c - 1)] = extended[c - 1];
    return SpectralDistribution(first, last, 1, std::move(interpolated));
}

}
