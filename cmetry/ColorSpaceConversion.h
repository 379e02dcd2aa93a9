#pragma once

#include <array>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/Weightfactors.h"

namespace CMetry {

// The steps between colour spaces that work on a colour vector alone. Each writes the result and
// the conditions of its input to out, which may be the input itself, and keeps the colour-space
// type of those conditions unless it says otherwise. The white is that of the weights the
// conditions name (WeightfactorCache).

using WhitePoint = std::array<double, 3>;

// The white of a set of weights. A set that could not be built has no white; asking it for its
// white raises the failure that left it without.
WhitePoint WhiteOf(const Weightfactors& weightfactors);

// L*, a*, b*; a negative L* becomes 0. CIE 15 (2004).
std::array<double, 3> LabOf(const float* xyz, const WhitePoint& white);
void ConvertXYZToLab(const HvColorVector& xyz, HvColorVector& lab);
void ConvertLabToXYZ(const HvColorVector& lab, HvColorVector& xyz);
// First channel kept, chroma and hue in degrees; the hue lies above 0 up to 360, and a neutral
// colour has 360.
std::array<double, 3> PolarOf(const float* rectangular);
void ConvertRectangularToPolar(const HvColorVector& rectangular, HvColorVector& polar);
void ConvertPolarToRectangular(const HvColorVector& polar, HvColorVector& rectangular);
// Black takes the chromaticity of the white; false when that white can't be computed.
bool ConvertXYZToxyY(const HvColorVector& xyz, HvColorVector& xyY);
// From "CIEXYZ" or "CIExyY" to u', v', Y, typed "CIEuvY1976" or "CIEuvY1960"; false from any
// other colour space.
bool ConvertTouvY1976(const HvColorVector& vector, HvColorVector& uvY);
bool ConvertTouvY1960(const HvColorVector& vector, HvColorVector& uvY);

// XYZ of a faint flat spectrum under the conditions: what black takes its chromaticity from. False
// when white base "Paper" finds no paper white.
bool GetXYZOfBlackStandIn(const HvMeasureConditions& conditions, HvColorVector& xyz);

// A copy of the conditions with another "ColorSpaceDescription.Type".
HvMeasureConditions WithColorSpace(const HvMeasureConditions& conditions, const char* colorSpace);

}
