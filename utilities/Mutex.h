#pragma once

#include "utilities/MutexImplementation.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace Utilities {

// A lock: private to the object and its copies when made without a name, else shared by every
// holder of the name in every process on the machine. Recursive for the thread that holds it.
// Copies share the lock. Without a "MutexImplementation" component the lock does nothing and
// every Lock succeeds.
class Mutex {
public:
    static constexpr unsigned long waitForEver = 4294967295UL;

    explicit Mutex(const String& name = String());

    // True when the lock is held; false when timeoutMs passed first.
    bool Lock(unsigned long timeoutMs);
    void Unlock();

private:
    SmartPointer<MutexImplementation> implementation;
};

}
