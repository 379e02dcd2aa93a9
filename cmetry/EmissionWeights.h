#pragma once

#include <array>

#include "cmetry/HvSpectrum.h"

namespace CMetry {

// Tristimulus values of emission spectra on the instrument's grid for the two-degree observer, in
// double precision, and their CIE 1960 chromaticity: what correlated colour temperature and
// colour rendering are defined on, whatever observer the conditions of a measurement name.
class EmissionWeights {
public:
    using Values = std::array<double, HvSpectrum::numberOfValues>;
    struct Xyz {
        double x;
        double y;
        double z;
    };
    struct Uv {
        double u;
        double v;
    };

    static Values ValuesOf(const HvSpectrum& spectrum);
    static Xyz XyzOf(const Values& values);
    // Fails with ExceptionCMetry "Chromaticity of a black spectrum" when X + 15 Y + 3 Z is not above 0.
    static Uv UvOf(const Xyz& xyz);
};

}
