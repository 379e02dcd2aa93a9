#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"

namespace CMetry {

// The paper white of the process: the spectrum that paper-relative values are divided by. It is
// shared by every caller and replaced as a whole, never changed in place, so readers on other
// threads always see one complete paper white.

// Makes a copy of the spectrum the paper white, releasing the former one.
void SetPaperWhite(const HvSpectrum& spectrum);
// A copy of the sample that holds the paper white; fails with ExceptionNullpointer before the
// first SetPaperWhite.
HvSample GetPaperWhite();
// True when a paper white is set and has a signal.
bool HasPaperWhite(const HvMeasureConditions& conditions);
// Divides value by value, in double precision; false, and nothing changed, without a paper white.
// A 0 in the paper white makes that point infinite.
bool DivideByPaperWhite(HvSpectrum& spectrum);
// The same on 36 floats.
bool DivideByPaperWhite(const HvMeasureConditions& conditions, float* values);
// The 36 values of the paper white, for what needs them on every call without copying a sample;
// false, and nothing written, before the first SetPaperWhite.
bool GetPaperWhiteValues(float* values);
Diagnostics::String GetPaperWhiteValueString();

}
