#pragma once

#include "cmetry/HvColorVector.h"

namespace CMetry {

// Display values 0 to 255 of a CIELab vector, typed "RGB". A "VellumCMMScreen" component does
// the work when there is one and doesn't fail; else the built-in conversion through XYZ, the
// display matrix and the gamma curve runs, clipping out-of-gamut colours channel by channel.
// Gives true, as every way of GetVector gives a bool; the built-in conversion has no failure.
bool GetRGB(const HvColorVector& vector, HvColorVector& out);

}
