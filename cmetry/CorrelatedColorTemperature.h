#pragma once

#include <optional>

#include "cmetry/EmissionWeights.h"

namespace CMetry {

// The correlated colour temperature of a light and its distance Duv from the Planckian locus in
// the CIE 1960 uv diagram, positive above the locus, by Ohno's combined triangular and parabolic
// solution. The locus is that of black bodies on the instrument's grid, so that a black body
// measured there gives its own temperature. Where the colour temperature search of the
// calculator answers which black body is nearest, this answers how far off the locus a light is.
class CorrelatedColorTemperature {
public:
    static constexpr double lowest = 1000.0;
    static constexpr double highest = 100000.0;

    struct Result {
        double temperature; // K
        double duv;
    };

    // Empty for a light outside 1000 K to 100000 K or without chromaticity.
    static std::optional<Result> Of(const EmissionWeights::Values& emission);
    static std::optional<Result> OfUv(const EmissionWeights::Uv& uv);

    // The radiance of a black body on the grid, unscaled.
    static EmissionWeights::Values BlackBody(double temperature);
    static EmissionWeights::Uv LocusAt(double temperature);
};

}
