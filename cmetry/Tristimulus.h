#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"

namespace CMetry {

// X, Y, Z of a spectrum under the conditions, where every colorimetric value of a spectrum
// starts. A spectrum whose own conditions say "Emission" is taken as emission, whatever the
// conditions passed; otherwise white base "Paper" divides it by the paper white first. The
// result carries the conditions, with the physical filter of the spectrum's own. False, and
// nothing written, when white base "Paper" finds no paper white.
bool GetXYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);

}
