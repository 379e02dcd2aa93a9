#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"

namespace CMetry {

// The steps between colour spaces that work on a colour vector alone. Each writes the result and
// the conditions of its input to out, which may be the input itself, and keeps the colour-space
// type of those conditions unless it says otherwise. The white is that of the weights the
// conditions name (WeightfactorCache).

// L*, a*, b*; a negative L* becomes 0.
void ConvertXYZToLab(const HvColorVector& xyz, HvColorVector& lab);
void ConvertLabToXYZ(const HvColorVector& lab, HvColorVector& xyz);
// First channel kept, chroma and hue in degrees; the hue lies above 0 up to 360, and a neutral
// colour has 360.
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
