#pragma once

#include "utilities/AnythingImplementationBase.h"
#include "utilities/Map.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Diagnostics {
class String;
}

namespace Utilities {

// A value of one of several types: a boolean, a short, a long, a double, a text, a map or a
// vector of Anythings, or nothing. Copies share one body, so a map or vector reached through
// one copy is the same object for all of them. It never converts: reading it as another type
// than the one it holds raises ExceptionWrongType.
class Anything {
public:
    Anything();
    Anything(bool value);
    Anything(short value);
    Anything(long value);
    Anything(double value);
    Anything(const char* text);
    Anything(const String& text);
    Anything(const Map<String, Anything>& map);
    Anything(const Vector<Anything>& vector);
    Anything(const Anything& other);
    Anything& operator=(const Anything& other);
    virtual ~Anything();

    bool operator==(const Anything& other) const;
    Diagnostics::String GetValueString() const;
    bool IsValid() const;

    const String& AsString() const;
    bool AsBool() const;
    short AsShort() const;
    long AsLong() const;
    double AsDouble() const;
    Map<String, Anything>& AsMap() const;
    Vector<Anything>& AsVector() const;

private:
    SmartPointer<AnythingImplementationBase> body;
};

}
