#include "cmetry/HvXYZ.h"

namespace CMetry {

HvXYZ::HvXYZ() = default;

HvXYZ::HvXYZ(float first, float second, float third, const HvMeasureConditions& conditions)
    : HvColorVector(first, second, third, conditions)
{
}

Diagnostics::String HvXYZ::GetValueString() const
{
    return ValueString("HvXYZ");
}

}
