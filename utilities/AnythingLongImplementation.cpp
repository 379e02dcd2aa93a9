#include "utilities/AnythingLongImplementation.h"

#include <cstdio>

#include "diagnostics/String.h"

namespace Utilities {

AnythingLongImplementation::AnythingLongImplementation(long value) : value(value) { }

AnythingLongImplementation::~AnythingLongImplementation() = default;

Diagnostics::String AnythingLongImplementation::GetValueString() const
{
    char text[32];
    std::snprintf(text, sizeof text, "%li", value);
    return Diagnostics::String(text);
}

bool AnythingLongImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingLongImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingLongImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingLongImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

long AnythingLongImplementation::AsLong() const
{
    return value;
}

}
