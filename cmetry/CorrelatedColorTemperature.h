#pragma once

#include "cmetry/EmissionWeights.h"
#include "cmetry/HvSpectrum.h"

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
        double temperature;  // K
        double duv;
    };

    // Fails with ExceptionCMetry "CCT outside 1000 K to 100000 K", or "Chromaticity of a black
    // spectrum" for a spectrum without one.
    static Result Of(const HvSpectrum& emission);
    static Result OfUv(const EmissionWeights::Uv& uv);

    // The radiance of a black body on the grid, unscaled.
    static EmissionWeights::Values BlackBody(double temperature);
    static EmissionWeights::Uv LocusAt(double temperature);
};

}
