#pragma once

#include "diagnostics/String.h"
#include "utilities/Component.h"
#include "utilities/String.h"

namespace Utilities {

// The platform's lock behind a Mutex, found under the name "MutexImplementation".
class MutexImplementation : public Component {
public:
    virtual Diagnostics::String GetValueString() const;

    // An empty name makes a lock private to this object; a name makes the one lock that every
    // holder of the name shares, in every process.
    virtual void Create(const String& name) = 0;

    // True when the lock is held; 4294967295 waits for ever.
    virtual bool Lock(unsigned long timeoutMs) = 0;
    virtual void Unlock() = 0;
};

}
