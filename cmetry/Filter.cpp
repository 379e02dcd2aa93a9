#include "cmetry/Filter.h"

namespace CMetry {

Filter::Filter()
{
    values.fill(0.0f);
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
