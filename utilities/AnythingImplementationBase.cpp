#include "utilities/AnythingImplementationBase.h"

#include "diagnostics/String.h"
#include "utilities/ExceptionWrongType.h"

namespace Utilities {

namespace {

[[noreturn]] void ThrowWrongType()
{
    throw ExceptionWrongType("");
}

}

AnythingImplementationBase::~AnythingImplementationBase() = default;

Diagnostics::String AnythingImplementationBase::GetValueString() const
{
    return Diagnostics::String();
}

bool AnythingImplementationBase::operator==(const AnythingImplementationBase&) const
{
    return false;
}

AnythingImplementationBase& AnythingImplementationBase::operator=(const AnythingImplementationBase&)
{
    ThrowWrongType();
}

bool AnythingImplementationBase::IsValid() const
{
    return true;
}

const String& AnythingImplementationBase::AsString() const
{
    ThrowWrongType();
}

bool AnythingImplementationBase::AsBool() const
{
    ThrowWrongType();
}

short AnythingImplementationBase::AsShort() const
{
    ThrowWrongType();
}

long AnythingImplementationBase::AsLong() const
{
    ThrowWrongType();
}

double AnythingImplementationBase::AsDouble() const
{
    ThrowWrongType();
}

Map<String, Anything>& AnythingImplementationBase::AsMap()
{
    ThrowWrongType();
}

Vector<Anything>& AnythingImplementationBase::AsVector()
{
    ThrowWrongType();
}

}
