#include "cmetry/HvLuv.h"

namespace CMetry {

HvLuv::HvLuv() = default;

HvLuv::HvLuv(float first, float second, float third, const HvMeasureConditions& conditions)
    : HvColorVector(first, second, third, conditions)
{
}

Diagnostics::String HvLuv::GetValueString() const
{
    return ValueString("HvLuv");
}

}
