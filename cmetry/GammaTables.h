#pragma once

#include <array>
#include <cstdint>

namespace CMetry {

// The display curve of the built-in RGB conversion, one for all three channels: entry 2c is the
// linear value of the 8-bit code c, an odd entry the half step above it. Made at the first use.
class GammaTables {
public:
    static constexpr uint16_t size = 512;

    // The 8-bit code whose half-step interval holds a linear value: 0 below the curve, 255 at 1
    // and above.
    static float Code(float linear);

private:
    GammaTables();

    static const GammaTables& Instance();
    int Index(float linear) const;

    std::array<float, size> table;
};

}
