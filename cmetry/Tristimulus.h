#pragma once

#include <array>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/Weightfactors.h"
#include "utilities/SmartPointer.h"

namespace CMetry {

// The dot products of the weights of the three axes with the 36 values, each summed in float.
std::array<float, 3> Tristimulus(const Weightfactors& weightfactors, const float* values);

// X, Y, Z of a spectrum under the conditions, where every colorimetric value of a spectrum
// starts. A spectrum whose own conditions say "Emission" is taken as emission, whatever the
// conditions passed; otherwise white base "Paper" divides it by the paper white first. The
// result carries the conditions, with the physical filter of the spectrum's own. False, and
// nothing written, when white base "Paper" finds no paper white.
bool GetXYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
// The same, handing back the weights it used, for what goes on from X, Y, Z to another space.
bool GetXYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out,
    Utilities::SmartPointer<const Weightfactors>& weightfactors);

}
