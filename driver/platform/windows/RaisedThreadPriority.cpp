#include "driver/platform/RaisedThreadPriority.h"

#include <windows.h>

namespace DeviceDriver {

RaisedThreadPriority::RaisedThreadPriority()
{
    const int priority = ::GetThreadPriority(::GetCurrentThread());
    if (priority != THREAD_PRIORITY_ERROR_RETURN && ::SetThreadPriority(::GetCurrentThread(), priority + 1) != 0) {
        former = priority;
    }
}

RaisedThreadPriority::~RaisedThreadPriority()
{
    if (former) {
        ::SetThreadPriority(::GetCurrentThread(), *former);
    }
}

}
