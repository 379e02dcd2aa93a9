#pragma once

#include <cstdint>

#include "cmetry/Enumerations.h"
#include "cmetry/Filter.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

namespace CMetry {

// The four density filters of one standard, indexed by DensityFilterMode 0 to 3: black (visual),
// cyan, magenta, yellow.
class DensityFilterSet {
public:
    static constexpr uint16_t numberOfChannels = 4;

    // Standard "Undefined", all filters zero.
    DensityFilterSet();
    // The filters of a standard; "User" takes the user filters as they are now. A number without a
    // standard gives zero filters.
    explicit DensityFilterSet(DensityStandard standard);

    DensityStandard GetStandard() const { return standard; }
    // Fails with ExceptionOutOfBound for a channel above 3.
    const Filter& GetFilter(uint16_t channel) const { return filters[channel]; }

    // The set of the process, loaded anew only when the standard differs from the last one asked
    // for; so new user filters show only after another standard was used in between. A set once
    // handed out never changes.
    static Utilities::SmartPointer<const DensityFilterSet> ForStandard(DensityStandard standard);

private:
    void LoadTables(DensityStandard standard);
    void LoadUserFilters();

    DensityStandard standard;
    Utilities::Vector<Filter> filters;
};

}
