#pragma once
// The spectrum of the instrument: 36 values, 380 nm to 730 nm in steps of 10 nm; and the three
// channels of a colour vector.

#include <array>

namespace OrbelCli {

constexpr int SpectrumPoints = 36;
constexpr int FirstWavelength = 380;
constexpr int WavelengthStep = 10;

using Spectrum = std::array<float, SpectrumPoints>;
using Triple = std::array<float, 3>;

}
