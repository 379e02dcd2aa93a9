#include "cmetry/HvLab.h"

namespace CMetry {

HvLab::HvLab() = default;

HvLab::HvLab(float first, float second, float third, const HvMeasureConditions& conditions)
    : HvColorVector(first, second, third, conditions)
{
}

}
