#pragma once

#include "cmetry/VellumCMMScreen.h"

namespace Plugins {

// Display values of a CIELab vector for an sRGB screen: Lab to XYZ under the screen's white
// D65, the standard sRGB matrix and transfer curve, each channel clipped to 0 to 255 and
// rounded to a whole number.
class SRGBScreen : public CMetry::VellumCMMScreen {
public:
    CMetry::HvColorVector ConvertLabToRGB(const CMetry::HvColorVector& vector) override;

private:
    static double LabToXYZFactor(double value);
    static float Encode(double linear);
};

}
