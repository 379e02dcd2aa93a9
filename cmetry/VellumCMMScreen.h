#pragma once

#include "cmetry/HvColorVector.h"
#include "utilities/Component.h"

namespace CMetry {

// Colour management for the screen, offered by a host under the name "VellumCMMScreen". Without
// one, the built-in conversion of GetRGB runs.
class VellumCMMScreen : public Utilities::Component {
public:
    ~VellumCMMScreen() override;

    // Display values of a CIELab vector.
    virtual HvColorVector ConvertLabToRGB(const HvColorVector& vector) = 0;
};

}
