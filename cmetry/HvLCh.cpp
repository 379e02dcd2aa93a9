#include "cmetry/HvLCh.h"

namespace CMetry {

HvLCh::HvLCh() = default;

HvLCh::HvLCh(float first, float second, float third, const HvMeasureConditions& conditions)
    : HvColorVector(first, second, third, conditions)
{
}

}
