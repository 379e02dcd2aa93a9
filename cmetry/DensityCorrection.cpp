#include "cmetry/DensityCorrection.h"

#include "utilities/ExceptionOutOfBound.h"

namespace CMetry {

using Utilities::SmartPointer;
using Utilities::Vector;

namespace {

constexpr float neutralFactor = 1.0f;
constexpr float neutralOffset = 0.0f;

void FillCells(std::array<std::array<DensityCorrection::Densities, DensityCorrection::numberOfStandards>,
                   DensityCorrection::numberOfFilters>& table,
    std::size_t firstFilter, std::size_t lastFilter, std::size_t firstStandard, std::size_t lastStandard,
    const DensityCorrection::Densities& values)
{
    for (std::size_t filter = firstFilter; filter <= lastFilter; ++filter) {
        for (std::size_t standard = firstStandard; standard <= lastStandard; ++standard) {
            table[filter][standard] = values;
        }
    }
}

SmartPointer<Vector<float>> CopyOf(const DensityCorrection::Densities& values)
{
    SmartPointer<Vector<float>> copy(new Vector<float>(values.size()));
    for (std::size_t channel = 0; channel < values.size(); ++channel) {
        (*copy)[channel] = values[channel];
    }
    return copy;
}

}

DensityCorrection::DensityCorrection()
{
    FillNeutral();
}

DensityCorrection& DensityCorrection::Instance()
{
    static DensityCorrection correction;
    return correction;
}

void DensityCorrection::Reset()
{
    DensityCorrection& correction = Instance();
    std::lock_guard<std::mutex> lock(correction.mutex);
    correction.FillNeutral();
}

void DensityCorrection::FillNeutral()
{
    Densities neutralFactors;
    neutralFactors.fill(neutralFactor);
    Densities neutralOffsets;
    neutralOffsets.fill(neutralOffset);
    FillCells(factors, 0, numberOfFilters - 1, 0, numberOfStandards - 1, neutralFactors);
    FillCells(offsets, 0, numberOfFilters - 1, 0, numberOfStandards - 1, neutralOffsets);
}

std::size_t DensityCorrection::FilterIndex(PhysicalFilter filter)
{
    const auto index = static_cast<std::size_t>(filter);
    if (index >= numberOfFilters) {
        throw Utilities::ExceptionOutOfBound("vector index >= vector size");
    }
    return index;
}

std::size_t DensityCorrection::StandardIndex(DensityStandard standard)
{
    const auto index = static_cast<std::size_t>(standard);
    if (index >= numberOfStandards) {
        throw Utilities::ExceptionOutOfBound("vector index >= vector size");
    }
    return index;
}

DensityCorrection::Densities DensityCorrection::Given(const SmartPointer<Vector<float>>& values, float missing)
{
    Densities given;
    for (std::size_t channel = 0; channel < numberOfChannels; ++channel) {
        given[channel] = values.IsNull() ? missing : (*values)[channel];
    }
    return given;
}

void DensityCorrection::Set(const HvMeasureConditions& conditions, const SmartPointer<Vector<float>>& factors,
    const SmartPointer<Vector<float>>& offsets)
{
    const Densities givenFactors = Given(factors, neutralFactor);
    const Densities givenOffsets = Given(offsets, neutralOffset);
    const bool allFilters = conditions.GetPhysicalFilter() == PhysicalFilter::Undefined;
    const bool allStandards = conditions.GetDensityStandard() == DensityStandard::Undefined;
    const std::size_t firstFilter = allFilters ? 0 : FilterIndex(conditions.GetPhysicalFilter());
    const std::size_t lastFilter = allFilters ? numberOfFilters - 1 : firstFilter;
    const std::size_t firstStandard = allStandards ? 0 : StandardIndex(conditions.GetDensityStandard());
    const std::size_t lastStandard = allStandards ? numberOfStandards - 1 : firstStandard;
    DensityCorrection& correction = Instance();
    std::lock_guard<std::mutex> lock(correction.mutex);
    FillCells(correction.factors, firstFilter, lastFilter, firstStandard, lastStandard, givenFactors);
    FillCells(correction.offsets, firstFilter, lastFilter, firstStandard, lastStandard, givenOffsets);
}

void DensityCorrection::Get(
    const HvMeasureConditions& conditions, SmartPointer<Vector<float>>& factors, SmartPointer<Vector<float>>& offsets)
{
    const std::size_t filter = FilterIndex(conditions.GetPhysicalFilter());
    const std::size_t standard = StandardIndex(conditions.GetDensityStandard());
    DensityCorrection& correction = Instance();
    std::lock_guard<std::mutex> lock(correction.mutex);
    factors = CopyOf(correction.factors[filter][standard]);
    offsets = CopyOf(correction.offsets[filter][standard]);
}

void DensityCorrection::Apply(PhysicalFilter filter, DensityStandard standard, bool relative, Densities& densities)
{
    const std::size_t filterIndex = FilterIndex(filter);
    const std::size_t standardIndex = StandardIndex(standard);
    DensityCorrection& correction = Instance();
    std::lock_guard<std::mutex> lock(correction.mutex);
    const Densities& factor = correction.factors[filterIndex][standardIndex];
    const Densities& offset = correction.offsets[filterIndex][standardIndex];
    for (std::size_t channel = 0; channel < numberOfChannels; ++channel) {
        densities[channel] = densities[channel] * factor[channel] + (relative ? 0.0f : offset[channel]);
    }
}

}
