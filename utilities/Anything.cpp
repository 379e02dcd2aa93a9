#include "utilities/Anything.h"

#include "diagnostics/String.h"
#include "utilities/AnythingBoolImplementation.h"
#include "utilities/AnythingDoubleImplementation.h"
#include "utilities/AnythingEmptyImplementation.h"
#include "utilities/AnythingLongImplementation.h"
#include "utilities/AnythingMapOfAnythingsImplementation.h"
#include "utilities/AnythingShortImplementation.h"
#include "utilities/AnythingStringImplementation.h"
#include "utilities/AnythingVectorOfAnythingsImplementation.h"

namespace Utilities {

Anything::Anything() : body(new AnythingEmptyImplementation()) { }

Anything::Anything(bool value) : body(new AnythingBoolImplementation(value)) { }

Anything::Anything(short value) : body(new AnythingShortImplementation(value)) { }

Anything::Anything(long value) : body(new AnythingLongImplementation(value)) { }

Anything::Anything(double value) : body(new AnythingDoubleImplementation(value)) { }

Anything::Anything(const char* text) : body(new AnythingStringImplementation(String(text))) { }

Anything::Anything(const String& text) : body(new AnythingStringImplementation(text)) { }

Anything::Anything(const Map<String, Anything>& map) : body(new AnythingMapOfAnythingsImplementation(map)) { }

Anything::Anything(const Vector<Anything>& vector) : body(new AnythingVectorOfAnythingsImplementation(vector)) { }

Anything::Anything(const Anything& other) = default;

Anything& Anything::operator=(const Anything& other) = default;

Anything::~Anything() = default;

bool Anything::operator==(const Anything& other) const
{
    return *body == *other.body;
}

Diagnostics::String Anything::GetValueString() const
{
    return body->GetValueString();
}

bool Anything::IsValid() const
{
    return body->IsValid();
}

const String& Anything::AsString() const
{
    return body->AsString();
}

bool Anything::AsBool() const
{
    return body->AsBool();
}

short Anything::AsShort() const
{
    return body->AsShort();
}

long Anything::AsLong() const
{
    return body->AsLong();
}

double Anything::AsDouble() const
{
    return body->AsDouble();
}

Map<String, Anything>& Anything::AsMap() const
{
    return body->AsMap();
}

Vector<Anything>& Anything::AsVector() const
{
    return body->AsVector();
}

}
