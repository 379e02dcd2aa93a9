#pragma once

#include "cmetry/HvColorVector.h"

namespace CMetry {

// A colour vector that holds L*, C*, h.
class HvLCh : public HvColorVector {
public:
    HvLCh();
    HvLCh(float first, float second, float third, const HvMeasureConditions& conditions);
};

}
