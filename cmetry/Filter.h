#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvSpectrum.h"

namespace CMetry {

// One spectral weighting of a density channel: a weight at each of the 36 data points, and their
// sum, computed when asked and kept until a weight is written.
class Filter {
public:
    static constexpr uint16_t numberOfValues = HvSpectrum::numberOfValues;

    // All weights 0.
    Filter();

    float operator[](uint16_t index) const { return values[index]; }
    // Writing through this clears the kept sum.
    float& operator[](uint16_t index)
    {
        sumValid = false;
        return values[index];
    }
    const float* GetValues() const { return values.data(); }

    float GetSum();

    // Weight by weight.
    Filter operator*(const Filter& other) const;

private:
    bool sumValid;
    float sum;
    std::array<float, numberOfValues> values;
};

}
