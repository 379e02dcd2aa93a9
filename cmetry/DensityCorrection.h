#pragma once

#include <array>
#include <cstdint>
#include <mutex>

#include "cmetry/Enumerations.h"
#include "cmetry/HvMeasureConditions.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

namespace CMetry {

// Factors and offsets that bend densities per physical filter, density standard and channel, for
// the whole process: factors 1.0 and offsets 0.0 until set.
class DensityCorrection {
public:
    static constexpr std::size_t numberOfFilters = 13;
    static constexpr std::size_t numberOfStandards = 6;
    static constexpr std::size_t numberOfChannels = 4;
    using Densities = std::array<float, numberOfChannels>;

    // Overwrites the cells of the filter and standard of the conditions; "Undefined" in either
    // selects all of its kind. A null factors pointer counts as four 1.0, a null offsets pointer as
    // four 0.0; a Vector of fewer than four fails with ExceptionOutOfBound and changes nothing.
    static void Set(const HvMeasureConditions& conditions,
        const Utilities::SmartPointer<Utilities::Vector<float>>& factors,
        const Utilities::SmartPointer<Utilities::Vector<float>>& offsets);
    // Copies of the cells of the filter and standard of the conditions.
    static void Get(const HvMeasureConditions& conditions, Utilities::SmartPointer<Utilities::Vector<float>>& factors,
        Utilities::SmartPointer<Utilities::Vector<float>>& offsets);
    // density × factor + offset, channel by channel; relative densities take no offset. A filter or
    // standard outside the tables fails with ExceptionOutOfBound.
    static void Apply(PhysicalFilter filter, DensityStandard standard, bool relative, Densities& densities);
    // Factors 1.0, offsets 0.0.
    static void Reset();

private:
    using Table = std::array<std::array<Densities, numberOfStandards>, numberOfFilters>;

    DensityCorrection();

    static DensityCorrection& Instance();
    void FillNeutral();
    static std::size_t FilterIndex(PhysicalFilter filter);
    static std::size_t StandardIndex(DensityStandard standard);
    static Densities Given(const Utilities::SmartPointer<Utilities::Vector<float>>& values, float missing);

    std::mutex mutex;
    Table factors;
    Table offsets;
};

// The names the density interface knows them by.
inline void SetDensityCorrection(const HvMeasureConditions& conditions,
    const Utilities::SmartPointer<Utilities::Vector<float>>& factors,
    const Utilities::SmartPointer<Utilities::Vector<float>>& offsets)
{
    DensityCorrection::Set(conditions, factors, offsets);
}

inline void GetDensityCorrection(const HvMeasureConditions& conditions,
    Utilities::SmartPointer<Utilities::Vector<float>>& factors,
    Utilities::SmartPointer<Utilities::Vector<float>>& offsets)
{
    DensityCorrection::Get(conditions, factors, offsets);
}

}
