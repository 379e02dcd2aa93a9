#include "utilities/AnythingVectorOfAnythingsImplementation.h"

#include "diagnostics/String.h"

namespace Utilities {

AnythingVectorOfAnythingsImplementation::AnythingVectorOfAnythingsImplementation(const Vector<Anything>& value)
    : value(value)
{
}

AnythingVectorOfAnythingsImplementation::~AnythingVectorOfAnythingsImplementation() = default;

Diagnostics::String AnythingVectorOfAnythingsImplementation::GetValueString() const
{
    return Diagnostics::String();
}

bool AnythingVectorOfAnythingsImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingVectorOfAnythingsImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingVectorOfAnythingsImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingVectorOfAnythingsImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

Vector<Anything>& AnythingVectorOfAnythingsImplementation::AsVector()
{
    return value;
}

}
