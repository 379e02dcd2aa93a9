#include "utilities/Mutex.h"

#include "utilities/ExceptionNullpointer.h"
#include "utilities/ResolveAs.h"

namespace Utilities {

Mutex::Mutex(const String& name) : implementation(ResolveAs<MutexImplementation>("MutexImplementation"))
{
    if (!implementation.IsNull()) {
        implementation->Create(name);
    }
}

bool Mutex::Lock(unsigned long timeoutMs)
{
    try {
        return implementation->Lock(timeoutMs);
    } catch (const ExceptionNullpointer&) {
        return true;
    }
}

void Mutex::Unlock()
{
    try {
        implementation->Unlock();
    } catch (const ExceptionNullpointer&) {
    }
}

}
