#pragma once

#include "utilities/Component.h"
#include "utilities/Map.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace HviManager {

// An instrument as a set of versioned interfaces that a client asks for by name.
class HviInstrument : public Utilities::Component {
public:
    virtual Utilities::SmartPointer<Utilities::Vector<Utilities::String>> GetInterfaceList() = 0;
    virtual Utilities::Map<Utilities::String, Utilities::String> GetConfiguration() = 0;
    // Null when the instrument doesn't serve the name (now).
    virtual Utilities::SmartPointer<Utilities::Component> GetInterface(const Utilities::String& name) = 0;
    virtual void SetConfiguration(const Utilities::Map<Utilities::String, Utilities::String>& configuration) = 0;
    // Ends everything that GetInterface opened.
    virtual void Close() = 0;
    // Called before the first use.
    virtual void Activate() = 0;
    // Why the instrument that is attached didn't open at the last request of an interface, in
    // its own words; empty when it opened.
    virtual Utilities::String OpenFailure() const = 0;
};

}
