#include "utilities/MutexLock.h"

namespace Utilities {

MutexLock::MutexLock(Mutex& mutex, unsigned long timeoutMs) : mutex(mutex), held(mutex.Lock(timeoutMs)) { }

MutexLock::~MutexLock()
{
    if (held) {
        mutex.Unlock();
    }
}

bool MutexLock::Held() const
{
    return held;
}

}
