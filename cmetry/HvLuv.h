#pragma once

#include "cmetry/HvColorVector.h"
#include "diagnostics/String.h"

namespace CMetry {

// A colour vector that holds L*, u', v'; it names itself in diagnostics.
class HvLuv : public HvColorVector {
public:
    HvLuv();
    HvLuv(float first, float second, float third, const HvMeasureConditions& conditions);

    Diagnostics::String GetValueString() const;
};

}
