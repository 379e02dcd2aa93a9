#include "cmetry/HvColorVector.h"

#include <cmath>

namespace CMetry {

HvColorVector::HvColorVector() : values{} { }

HvColorVector::HvColorVector(float first, float second, float third, const HvMeasureConditions& conditions)
    : values{first, second, third, 0.0f}, conditions(conditions)
{
}

HvColorVector::HvColorVector(const HvColorVector& other) = default;

HvColorVector& HvColorVector::operator=(const HvColorVector& other) = default;

HvColorVector::~HvColorVector() = default;

void HvColorVector::SetConditions(const HvMeasureConditions& value, const HvMeasureConditions& filterSource)
{
    conditions = value;
    conditions.CopyPhysicalFilter(filterSource);
}

bool HvColorVector::operator==(const HvColorVector& other) const
{
    return values == other.values && conditions == other.conditions;
}

void HvColorVector::Subtract(const HvColorVector& other)
{
    for (uint16_t index = 0; index < numberOfChannels; ++index) {
        values[index] = static_cast<float>(static_cast<double>(values[index]) - other.values[index]);
    }
}

void HvColorVector::Multiply(const HvColorVector& other)
{
    for (uint16_t index = 0; index < numberOfChannels; ++index) {
        values[index] = static_cast<float>(static_cast<double>(values[index]) * other.values[index]);
    }
}

double HvColorVector::GetLength() const
{
    double sumOfSquares = 0.0;
    for (float value : values) {
        sumOfSquares += static_cast<double>(value) * value;
    }
    return std::sqrt(sumOfSquares);
}

Diagnostics::String HvColorVector::GetValueString() const
{
    return ValueString("HvColorVector");
}

Diagnostics::String HvColorVector::ValueString(const char* typeName) const
{
    Diagnostics::String text(typeName);
    text += ": Values: ";
    text += Diagnostics::String(values[0]);
    text += ", ";
    text += Diagnostics::String(values[1]);
    text += ", ";
    text += Diagnostics::String(values[2]);
    text += ", ...";
    return text;
}

}
