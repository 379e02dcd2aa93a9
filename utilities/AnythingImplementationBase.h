#pragma once

#include "utilities/Map.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Diagnostics {
class String;
}

namespace Utilities {

class Anything;

// The body of an Anything. Each derived body answers only for its own type; everything else
// fails here, since an Anything never converts between types.
class AnythingImplementationBase {
public:
    AnythingImplementationBase() = default;
    AnythingImplementationBase(const AnythingImplementationBase&) = delete;

    virtual ~AnythingImplementationBase() = 0;
    virtual Diagnostics::String GetValueString() const;
    virtual bool operator==(const AnythingImplementationBase& other) const;
    virtual AnythingImplementationBase& operator=(const AnythingImplementationBase& other);
    virtual bool IsValid() const;
    virtual const String& AsString() const;
    virtual bool AsBool() const;
    virtual short AsShort() const;
    virtual long AsLong() const;
    virtual double AsDouble() const;
    virtual Map<String, Anything>& AsMap();
    virtual Vector<Anything>& AsVector();
};

}
