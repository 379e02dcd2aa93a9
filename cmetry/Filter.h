#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvSpectrum.h"

namespace CMetry {

// One spectral weighting of a density channel: a weight at each of the 36 data points.
class Filter {
public:
    static constexpr uint16_t numberOfValues = HvSpectrum::numberOfValues;

    // All weights 0.
    Filter();

    float operator[](uint16_t index) const { return values[index]; }
    float& operator[](uint16_t index) { return values[index]; }
    const float* GetValues() const { return values.data(); }

    // Weight by weight.
    Filter operator*(const Filter& other) const;

private:
    std::array<float, numberOfValues> values;
};

}
