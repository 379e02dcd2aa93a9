#pragma once

#include "cmetry/Enumerations.h"
#include "cmetry/HvDensities.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/Vector.h"

namespace CMetry {

// The graphic-arts quantities built on density. The density of each spectrum is read by the filter
// mode, "Auto" selecting for each spectrum on its own; "Max" works instead at the data point where
// the reference is darkest. A density below 0.01 in a divisor counts as none. Paper-relative values
// need a paper white and give false without one.

// The printed area of a tint as a fraction, by Yule-Nielsen with the factor n, always relative to
// the paper white; the form without n is Murray-Davies.
bool GetDotArea(const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, DensityFilterMode mode,
    float n, float& out);
bool GetDotArea(
    const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, DensityFilterMode mode, float& out);

// The Murray-Davies area in percent less the nominal tone value in percent, by the density standard
// and filter mode of the conditions. Fails with ExceptionCMetry "Calculation of dot gain failed".
float GetDotGain(const HvSpectrum& tint, const HvSpectrum& solid, const HvMeasureConditions& conditions, float nominal);
// How far the halftones fall short of the largest of them, in percent points summed over all; 0
// for fewer than two. Fails with ExceptionCMetry "Calculation of slur failed at Halftone " and the
// index counted from 0.
float GetSlur(
    const Utilities::Vector<HvSpectrum>& halftones, const HvSpectrum& solid, const HvMeasureConditions& conditions);

// (solid - tint) / solid in corrected densities.
bool GetPrintContrast(const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, bool relative,
    DensityFilterMode mode, float& out);

// How well the second colour takes on the first: (overprint - first) / second in raw densities,
// paper-relative; 1.0 when the second has no density.
bool GetTrapping(const HvSpectrum& first, const HvSpectrum& second, const HvSpectrum& overprint,
    DensityStandard standard, DensityFilterMode mode, float& out);
bool GetTrapping(const HvDensities& first, const HvDensities& second, const HvDensities& overprint,
    DensityFilterMode mode, float& out);

// Lowest over highest colour density; 1.0 without density.
bool GetGrayness(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& out, bool corrected);
// (middle - lowest) / (highest - lowest) of the colour densities; 0.0 without density.
bool GetHueError(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& out, bool corrected);

}
