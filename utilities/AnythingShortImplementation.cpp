#include "utilities/AnythingShortImplementation.h"

#include <cstdio>

#include "diagnostics/String.h"

namespace Utilities {

AnythingShortImplementation::AnythingShortImplementation(short value) : value(value) { }

AnythingShortImplementation::~AnythingShortImplementation() = default;

Diagnostics::String AnythingShortImplementation::GetValueString() const
{
    char text[16];
    std::snprintf(text, sizeof text, "%i", value);
    return Diagnostics::String(text);
}

bool AnythingShortImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingShortImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingShortImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingShortImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

short AnythingShortImplementation::AsShort() const
{
    return value;
}

}
