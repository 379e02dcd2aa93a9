#pragma once

#include <array>
#include <optional>

#include "cmetry/EmissionWeights.h"

namespace CMetry {

// The CIE colour rendering indices of a light: the special indices R1 to R14 of the fourteen test
// colour samples and the general index Ra, the mean of R1 to R8. The reference illuminant has the
// light's correlated colour temperature: a black body below 5000 K, CIE daylight from 5000 K on.
class ColorRendering {
public:
    static constexpr double daylightFrom = 5000.0;

    struct Result {
        double temperature;
        double duv;
        double ra;
        std::array<double, 14> special; // R1 to R14
    };

    // Empty where the correlated colour temperature is.
    static std::optional<Result> Of(const EmissionWeights::Values& emission);
    // CIE daylight of a correlated colour temperature on the grid, unscaled.
    static EmissionWeights::Values Daylight(double temperature);
};

}
