#include "driver/platform/RaisedThreadPriority.h"

#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>

namespace DeviceDriver {

namespace {

// On Linux the nice value of a thread is set through its thread id.
id_t ThisThread()
{
    return static_cast<id_t>(::gettid());
}

}

RaisedThreadPriority::RaisedThreadPriority()
{
    errno = 0;
    const int nice = ::getpriority(PRIO_PROCESS, ThisThread());
    if (errno == 0 && ::setpriority(PRIO_PROCESS, ThisThread(), nice - 1) == 0) {
        former = nice;
    }
}

RaisedThreadPriority::~RaisedThreadPriority()
{
    if (former) {
        ::setpriority(PRIO_PROCESS, ThisThread(), *former);
    }
}

}
