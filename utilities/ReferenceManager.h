#pragma once

namespace Diagnostics {
class String;
}

namespace Utilities {

// The abstract base of every SmartPointer.
class ReferenceManager {
public:
    // Keeps the base abstract; a SmartPointer has nothing to do here.
    virtual void Anchor() = 0;
    virtual Diagnostics::String GetValueString() const;
    virtual ~ReferenceManager();
};

}
