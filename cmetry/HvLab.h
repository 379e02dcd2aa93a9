#pragma once

#include "cmetry/HvColorVector.h"

namespace CMetry {

// A colour vector that holds L*, a*, b*.
class HvLab : public HvColorVector {
public:
    HvLab();
    HvLab(float first, float second, float third, const HvMeasureConditions& conditions);
};

}
