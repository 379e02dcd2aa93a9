#include "utilities/AnythingBoolImplementation.h"

#include "diagnostics/String.h"

namespace Utilities {

AnythingBoolImplementation::AnythingBoolImplementation(bool value) : value(value) { }

AnythingBoolImplementation::~AnythingBoolImplementation() = default;

Diagnostics::String AnythingBoolImplementation::GetValueString() const
{
    return Diagnostics::String(value ? "true" : "false");
}

bool AnythingBoolImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingBoolImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingBoolImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingBoolImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

bool AnythingBoolImplementation::AsBool() const
{
    return value;
}

}
