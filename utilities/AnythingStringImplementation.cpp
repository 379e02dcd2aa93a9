#include "utilities/AnythingStringImplementation.h"

#include "diagnostics/String.h"

namespace Utilities {

AnythingStringImplementation::AnythingStringImplementation(const String& value) : value(value) { }

AnythingStringImplementation::~AnythingStringImplementation() = default;

Diagnostics::String AnythingStringImplementation::GetValueString() const
{
    return Diagnostics::String(value.CString());
}

bool AnythingStringImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingStringImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingStringImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingStringImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

const String& AnythingStringImplementation::AsString() const
{
    return value;
}

}
