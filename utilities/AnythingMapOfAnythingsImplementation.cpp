#include "utilities/AnythingMapOfAnythingsImplementation.h"

#include "diagnostics/String.h"

namespace Utilities {

AnythingMapOfAnythingsImplementation::AnythingMapOfAnythingsImplementation(const Map<String, Anything>& value)
    : value(value)
{
}

AnythingMapOfAnythingsImplementation::~AnythingMapOfAnythingsImplementation() = default;

Diagnostics::String AnythingMapOfAnythingsImplementation::GetValueString() const
{
    return Diagnostics::String("MapOfAnythings");
}

bool AnythingMapOfAnythingsImplementation::operator==(const AnythingImplementationBase& other) const
{
    const auto* same = dynamic_cast<const AnythingMapOfAnythingsImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return value == same->value;
}

AnythingImplementationBase& AnythingMapOfAnythingsImplementation::operator=(const AnythingImplementationBase& other)
{
    const auto* same = dynamic_cast<const AnythingMapOfAnythingsImplementation*>(&other);
    if (same == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    value = same->value;
    return *this;
}

Map<String, Anything>& AnythingMapOfAnythingsImplementation::AsMap()
{
    return value;
}

}
