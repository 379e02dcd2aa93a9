#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"

namespace CMetry {

// The ways from a spectrum to each colour space; each starts with GetXYZ and goes on with the
// weights it used, so that the weights are looked up once per spectrum. The result carries the
// conditions as GetXYZ gives them, colour-space type included, so a caller that wants another type
// sets it in the conditions it passes. False, with out unspecified, only when white base "Paper"
// finds no paper white.

bool GetLab(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetLCh(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetxyY(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
// L* with the chromaticity u', v' itself, not 13 L* (u' - u'n).
bool GetLuv(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetLChuv(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetLCHmg(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetLABmg(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
bool GetHunterLab(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);
// Tristimulus filter values Rx, Ry, Rz.
bool GetRxRyRz(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out);

}
