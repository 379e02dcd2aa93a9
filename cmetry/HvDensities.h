#pragma once

#include <array>

#include "cmetry/DensityFilterSet.h"
#include "cmetry/Enumerations.h"
#include "cmetry/HvMeasureConditions.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

namespace CMetry {

// Black, cyan, magenta, yellow, indexed by DensityFilterMode 0 to 3.
using DensityValues = std::array<float, DensityFilterSet::numberOfChannels>;

// One density result: the four channels, the filters and standard they were computed with and
// the conditions of the spectrum.
class HvDensities {
public:
    // No results, standard "Undefined", all channels 0.
    HvDensities();
    HvDensities(const DensityValues& values, const Utilities::SmartPointer<const DensityFilterSet>& filters,
        DensityStandard standard, const HvMeasureConditions& conditions);

    bool HasResults() const { return hasResults; }
    // The channel of a mode 0 to 3, 0.0 for "Max", the automatically selected channel for "Auto";
    // another mode fails with ExceptionOutOfBound.
    float GetValue(DensityFilterMode mode) const;
    DensityValues GetValues() const;
    DensityStandard GetStandard() const { return standard; }
    const Utilities::SmartPointer<const DensityFilterSet>& GetFilters() const { return filters; }
    const HvMeasureConditions& GetConditions() const { return conditions; }

private:
    Utilities::Vector<float> values;
    bool hasResults;
    Utilities::SmartPointer<const DensityFilterSet> filters;
    DensityStandard standard;
    HvMeasureConditions conditions;
};

}
