#pragma once

#include <array>
#include <optional>

namespace CMetry {

// Tristimulus values of emission spectra on the instrument's grid (36 values, 380 nm to 730 nm in
// steps of 10 nm) for the two-degree observer, in double precision, and their CIE 1960
// chromaticity: what correlated colour temperature and colour rendering are defined on. Built
// from the published tables alone, so that the command line computes as the module does.
class EmissionWeights {
public:
    static constexpr int count = 36;
    static constexpr int firstWavelength = 380;
    static constexpr int step = 10;

    using Values = std::array<double, count>;
    struct Xyz {
        double x;
        double y;
        double z;
    };
    struct Uv {
        double u;
        double v;
    };

    static Xyz XyzOf(const Values& values);
    // Empty when X + 15 Y + 3 Z is not above 0.
    static std::optional<Uv> UvOf(const Xyz& xyz);
};

}
