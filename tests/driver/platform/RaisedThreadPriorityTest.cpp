#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include "driver/platform/RaisedThreadPriority.h"

namespace DeviceDriverTest {

namespace {

int NiceOfThisThread()
{
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

}

// Raised where the process may raise it, and in every case given back as it was.
TEST(RaisedThreadPriority, RaisesOneStepWherePermittedAndPutsTheFormerBack)
{
    const int before = NiceOfThisThread();
    {
        const DeviceDriver::RaisedThreadPriority raised;
        EXPECT_EQ(NiceOfThisThread(), raised.IsRaised() ? before - 1 : before);
    }
    EXPECT_EQ(NiceOfThisThread(), before);
}

}
