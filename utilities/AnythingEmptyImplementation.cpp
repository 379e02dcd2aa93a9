#include "utilities/AnythingEmptyImplementation.h"

#include "diagnostics/String.h"

namespace Utilities {

AnythingEmptyImplementation::~AnythingEmptyImplementation() = default;

Diagnostics::String AnythingEmptyImplementation::GetValueString() const
{
    return Diagnostics::String("AnythingEmpty");
}

bool AnythingEmptyImplementation::operator==(const AnythingImplementationBase& other) const
{
    if (dynamic_cast<const AnythingEmptyImplementation*>(&other) == nullptr) {
        return AnythingImplementationBase::operator==(other);
    }
    return true;
}

AnythingImplementationBase& AnythingEmptyImplementation::operator=(const AnythingImplementationBase& other)
{
    if (dynamic_cast<const AnythingEmptyImplementation*>(&other) == nullptr) {
        return AnythingImplementationBase::operator=(other);
    }
    return *this;
}

bool AnythingEmptyImplementation::IsValid() const
{
    return false;
}

}
