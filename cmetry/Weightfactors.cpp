#include "cmetry/Weightfactors.h"

#include <algorithm>

#include "cmetry/HvSpectrum.h"
#include "cmetry/LagrangeCoefficients.h"
#include "cmetry/SpectralDistribution.h"
#include "cmetry/TranslatedMessage.h"
#include "utilities/Exception.h"
#include "utilities/ExceptionCalculationProblem.h"
#include "utilities/ExceptionNullpointer.h"

namespace CMetry {

using Utilities::ExceptionCalculationProblem;

namespace {

constexpr int calculationSpan = Weightfactors::calculationMaximum - Weightfactors::calculationMinimum;
// The luminous efficacy in lm/W that emission is scaled by, in place of an illuminant.
constexpr float emissionK = 0.683f;
constexpr float whiteY = 100.0f;

ExceptionCalculationProblem GridFailure(const char* words)
{
    return ExceptionCalculationProblem(TranslatedMessage(words));
}

// The dot product of a row of coefficients with as many successive entries from start on:
// products in double precision, the sum in float.
float Dot(std::span<const float> row, const std::vector<float>& entries, int start)
{
    float sum = 0.0f;
    for (std::size_t i = 0; i < row.size(); ++i) {
        sum += static_cast<double>(row[i]) * entries[static_cast<std::size_t>(start) + i];
    }
    return sum;
}

}

Weightfactors::Weightfactors(const HvMeasureConditions& conditions)
    : k(0.0f), dataCount(conditions.numberOfDataPoints), dataMinimum(conditions.wavelengthMinimum),
      dataMaximum(conditions.wavelengthMaximum), dataStep(0), whitePoint{}, perfectDiffuserY(0.0), emission(false)
{
    try {
        Build(conditions);
    } catch (const Utilities::Exception& exception) {
        Clear(*exception.Text());
    }
}

void Weightfactors::CheckDataGrid(uint16_t count, uint16_t minimum, uint16_t maximum)
{
    if (count < 4) {
        throw GridFailure("Measure conditions: Too few measure data");
    }
    if (maximum <= minimum || maximum <= calculationMinimum || minimum >= calculationMaximum) {
        throw GridFailure("Measure conditions: Check bandwidth of measure data");
    }
    const int step = (maximum - minimum) / (count - 1);
    if (step == 0 || calculationSpan % step != 0) {
        throw GridFailure("Measure conditions: measure data bandwith conflicts Step size is not a integer.");
    }
    if ((calculationMinimum - minimum) % step != 0 || (calculationMinimum - maximum) % step != 0) {
        throw GridFailure("Measure conditions: measure data bandwith conflicts with internal calculation bandwith.");
    }
}

void Weightfactors::Build(const HvMeasureConditions& conditions)
{
    CheckDataGrid(dataCount, dataMinimum, dataMaximum);
    dataStep = static_cast<uint16_t>((dataMaximum - dataMinimum) / (dataCount - 1));
    emission = conditions.GetIllumination().GetType() == Illumination::Emission;
    TakeObserver(conditions.GetObserver());
    if (emission) {
        k = emissionK;
    } else {
        TakeIlluminant(conditions);
        k = static_cast<float>(100.0 / SumOfIlluminantTimesYBar());
    }
    const LagrangeCoefficients lagrange(dataStep);
    weights.assign(static_cast<std::size_t>(numberOfAxes) * dataCount, 0.0f);
    for (uint16_t axis = 0; axis < numberOfAxes; ++axis) {
        FoldOntoDataPoints(GridWeights(Weighted(axis), lagrange), axis);
    }
    TakeWhitePoint();
}

// X and Z of the perfect diffuser as its weights sum them up; Y is 100 by definition.
void Weightfactors::TakeWhitePoint()
{
    for (uint16_t axis = 0; axis < numberOfAxes; ++axis) {
        float sum = 0.0f;
        for (float weight : GetWeights(axis)) {
            sum += weight;
        }
        whitePoint[axis] = sum;
    }
    whitePoint[1] = whiteY;
    float ySum = 0.0f;
    for (float weight : GetWeights(1)) {
        ySum += static_cast<double>(weight);
    }
    perfectDiffuserY = ySum;
}

// x-bar, y-bar, z-bar at 1 nm over the calculation range; 0 beyond the end of a table.
void Weightfactors::TakeObserver(Observer observerType)
{
    observer.resize(static_cast<std::size_t>(numberOfAxes) * calculationCount);
    for (uint16_t axis = 0; axis < numberOfAxes; ++axis) {
        const SpectralDistribution table = SpectralDistribution::GetObserverDistribution(observerType, axis);
        for (uint16_t t = 0; t < calculationCount; ++t) {
            observer[axis * calculationCount + t] = table.ValueAt(static_cast<uint16_t>(calculationMinimum + t));
        }
    }
}

void Weightfactors::TakeIlluminant(const HvMeasureConditions& conditions)
{
    const IlluminationTYPE& type = conditions.GetIllumination();
    SpectralDistribution distribution;
    if (type.GetType() == Illumination::Userdefined) {
        distribution = SpectralDistribution::FromSpectrum(*conditions.GetUserDefinedIlluminationPointer());
    } else if (type.GetType() == Illumination::Dxx) {
        distribution = SpectralDistribution::GetDaylightDistribution(type.GetColorTemperature());
    } else {
        distribution = SpectralDistribution::GetIlluminantDistribution(type);
    }
    const SpectralDistribution interpolated = distribution.InterpolatedTo1nm(calculationMinimum, calculationMaximum);
    illuminant.assign(interpolated.GetValues().begin(), interpolated.GetValues().end());
}

// k = 100 / Σ S ȳ Δλ: CIE 15:2004, Colorimetry, 3rd edition.
float Weightfactors::SumOfIlluminantTimesYBar() const
{
    float sum = 0.0f;
    for (uint16_t t = 0; t < calculationCount; ++t) {
        sum += static_cast<double>(illuminant[t]) * observer[calculationCount + t];
    }
    return sum;
}

// T(t) = S(t) c(t) k over the calculation range, or c(t) k for emission.
std::vector<float> Weightfactors::Weighted(uint16_t axis) const
{
    std::vector<float> weighted(calculationCount);
    for (uint16_t t = 0; t < calculationCount; ++t) {
        const double matching = observer[axis * calculationCount + t];
        weighted[t] = static_cast<float>(emission ? matching * k : illuminant[t] * matching * k);
    }
    return weighted;
}

// Weights of the Lagrange interpolation: ASTM E2022-01 (2001), Calculation of weighting factors
// for tristimulus integration.
// W[i], the weight of the grid point at 360 + i s in the integration of the spectrum as the
// Lagrange polynomials of the data step interpolate it over the whole calculation range.
std::vector<float> Weightfactors::GridWeights(const std::vector<float>& t, const LagrangeCoefficients& lagrange) const
{
    const int s = dataStep;
    const int n = calculationSpan / s;
    auto l3a = [&](uint16_t node, int interval) { return Dot(lagrange.GetL3a(node), t, interval * s); };
    auto l3b = [&](uint16_t node, int interval) { return Dot(lagrange.GetL3b(node), t, interval * s); };
    auto l4 = [&](uint16_t node, int interval) { return Dot(lagrange.GetL4(node), t, interval * s); };
    std::vector<float> w(static_cast<std::size_t>(n) + 1);
    w[0] = l3a(0, 0) + l4(0, 1);
    w[1] = l3a(1, 0) + l4(1, 1) + l4(0, 2);
    w[2] = l3a(2, 0) + l4(2, 1) + l4(1, 2) + l4(0, 3);
    for (int i = 3; i <= n - 3; ++i) {
        w[i] = l4(3, i - 2) + l4(2, i - 1) + l4(1, i) + l4(0, i + 1);
    }
    w[n - 2] = l4(3, n - 4) + l4(2, n - 3) + l4(1, n - 2) + l3b(0, n - 1);
    w[n - 1] = l4(3, n - 3) + l4(2, n - 2) + l3b(1, n - 1);
    w[n] = l4(3, n - 2) + l3b(2, n - 1) + t[static_cast<std::size_t>(n * s)];
    return w;
}

// Grid points below the first data point add up on the first weight, those above the last on
// the last; a data range beyond the calculation range leaves the weights behind it at 0.
void Weightfactors::FoldOntoDataPoints(const std::vector<float>& gridWeights, uint16_t axis)
{
    float* row = &weights[static_cast<std::size_t>(axis) * dataCount];
    const int offset = (dataMinimum - calculationMinimum) / dataStep;
    const int last = dataCount - 1;
    for (int i = 0; i < static_cast<int>(gridWeights.size()); ++i) {
        const int j = std::clamp(i - offset, 0, last);
        if (j == 0 || j == last) {
            row[j] += gridWeights[static_cast<std::size_t>(i)];
        } else {
            row[j] = gridWeights[static_cast<std::size_t>(i)];
        }
    }
}

void Weightfactors::Clear(const Utilities::String& failureText)
{
    illuminant.clear();
    observer.clear();
    weights.clear();
    whitePoint = {};
    perfectDiffuserY = 0.0;
    failure = failureText;
}

std::span<const float> Weightfactors::GetWeights(uint16_t axis) const
{
    if (axis >= numberOfAxes) {
        throw Utilities::ExceptionNullpointer(TranslatedMessage("Invalid Axis"));
    }
    if (!HasWeights()) {
        throw ExceptionCalculationProblem(failure);
    }
    return std::span<const float>(weights).subspan(static_cast<std::size_t>(axis) * dataCount, dataCount);
}

float Weightfactors::GetWhitePoint(uint16_t axis) const
{
    return axis < numberOfAxes ? whitePoint[axis] : 0.0f;
}

}
