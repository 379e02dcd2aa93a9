#include "cmetry/HvDensities.h"

#include "cmetry/Density.h"

namespace CMetry {

HvDensities::HvDensities()
    : values(DensityFilterSet::numberOfChannels), hasResults(false), standard(DensityStandard::Undefined)
{
    for (uint16_t channel = 0; channel < DensityFilterSet::numberOfChannels; ++channel) {
        values[channel] = 0.0f;
    }
}

HvDensities::HvDensities(const DensityValues& densities, const Utilities::SmartPointer<const DensityFilterSet>& set,
    DensityStandard densityStandard, const HvMeasureConditions& spectrumConditions)
    : values(DensityFilterSet::numberOfChannels), hasResults(true), filters(set), standard(densityStandard),
      conditions(spectrumConditions)
{
    for (uint16_t channel = 0; channel < DensityFilterSet::numberOfChannels; ++channel) {
        values[channel] = densities[channel];
    }
}

float HvDensities::GetValue(DensityFilterMode mode) const
{
    if (mode == DensityFilterMode::Max) {
        return 0.0f;
    }
    if (mode == DensityFilterMode::Auto) {
        mode = SelectFilter(GetValues());
    }
    return values[static_cast<unsigned long>(mode)];
}

DensityValues HvDensities::GetValues() const
{
    DensityValues densities;
    for (uint16_t channel = 0; channel < DensityFilterSet::numberOfChannels; ++channel) {
        densities[channel] = values[channel];
    }
    return densities;
}

}
