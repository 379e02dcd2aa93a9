#include "utilities/AnythingDoubleImplementation.h"

#include <cstdio>

#include "diagnostics/String.h"

namespace Utilities {

AnythingDoubleImplementation::AnythingDoubleImplementation(double value) : value(value) { }

AnythingDoubleImplementation::~AnythingDoubleImplementation() = default;

Diagnostics::String AnythingDoubleImplementation::GetValueString() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return Diagnostics::String(text);
}

bool AnythingDoubleImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingDoubleImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingDoubleImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingDoubleImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

double AnythingDoubleImplementation::AsDouble() const
{
    return value;
}

}
