#pragma once

#include "cmetry/HvColorVector.h"
#include "diagnostics/String.h"

namespace CMetry {

// A colour vector that holds X, Y, Z; it names itself in diagnostics.
class HvXYZ : public HvColorVector {
public:
    HvXYZ();
    HvXYZ(float first, float second, float third, const HvMeasureConditions& conditions);

    Diagnostics::String GetValueString() const;
};

}
