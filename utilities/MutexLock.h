#pragma once

#include "utilities/Mutex.h"

namespace Utilities {

// Holds a Mutex for a scope: whatever way the scope is left, a lock that was had is let go.
class MutexLock {
public:
    explicit MutexLock(Mutex& mutex, unsigned long timeoutMs = Mutex::waitForEver);
    ~MutexLock();
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    // False when the time-out passed before the lock was had.
    bool Held() const;

private:
    Mutex& mutex;
    bool held;
};

}
