#include "cmetry/Filter.h"

namespace CMetry {

Filter::Filter() : sumValid(true), sum(0.0f)
{
    values.fill(0.0f);
}

float Filter::GetSum()
{
    if (!sumValid) {
        sum = 0.0f;
        for (float value : values) {
            sum += value;
        }
        sumValid = true;
    }
    return sum;
}

Filter Filter::operator*(const Filter& other) const
{
    Filter product;
    for (uint16_t index = 0; index < numberOfValues; ++index) {
        product[index] = values[index] * other.values[index];
    }
    return product;
}

}
