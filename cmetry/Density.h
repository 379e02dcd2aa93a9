#pragma once

#include <array>
#include <cstdint>

#include "cmetry/Enumerations.h"
#include "cmetry/HvDensities.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/String.h"

namespace CMetry {

// Optical densities of the graphic arts: the negative decadic logarithm of the reflectance seen
// through the filters of a density standard. A channel without light has the density 9.99; that
// is a value, and only GetDensity turns it into a failure. "relative" subtracts the densities of
// the paper white and needs one with a signal.

inline constexpr float densityWithoutLight = 9.99f;

// False for a standard without filters and, when relative, without a paper white.
bool GetRawDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, HvDensities& out);
// The raw densities through the correction of the spectrum's physical filter and the standard.
bool GetCorrectedDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, HvDensities& out);

// The colour channels, highest density first; equal densities in channel order.
std::array<DensityFilterMode, 3> SortColorChannels(const DensityValues& densities);
// The channel that counts: black for a neutral colour (the lowest colour density above 0.7 of the
// highest) or for one without density, else the channel of the highest density.
DensityFilterMode SelectFilter(const DensityValues& densities);
DensityFilterMode SelectFilter(const HvDensities& densities);

// The corrected density of channel, or of the selected channel when automatic, which is then
// written to channel. On failure the density is 9.99 and the channel "Undefined". A fixed channel
// outside 0 to 3 fails with ExceptionOutOfBound.
bool GetDensityValue(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& density,
    DensityFilterMode& channel, bool automatic);

// The density of each data point; false when relative finds no paper white.
bool GetSpectralDensities(const HvSpectrum& spectrum, bool relative, float* densities);
// The density at the data point of lowest reflectance from 410 nm to 700 nm, the one nearest the
// middle of the spectrum among equals, and its wavelength.
bool GetPeakDensity(const HvSpectrum& spectrum, bool relative, float& density, uint16_t& wavelength);

// The density that the conditions ask for: their standard and filter mode, "Max" and "Auto" both
// selecting automatically, paper-relative under any white base but "Absolute". Fails with
// ExceptionCMetry "Missing WhiteReference" under "Paper" or "Automatic" before a paper white is
// set, and "Calculation of Density failed" for a density of 9.99.
float GetDensity(const HvSpectrum& spectrum, const HvMeasureConditions& conditions);
// The keyword of the channel GetDensity reads: "Black", "Cyan", "Magenta", "Yellow", or "Undefined"
// when the densities can't be computed.
Utilities::String GetDensityFilter(const HvSpectrum& spectrum, const HvMeasureConditions& conditions);

}
