#include "utilities/Thread.h"

#include "utilities/ExceptionMultithreading.h"
#include "utilities/ResolveAs.h"

namespace Utilities {

namespace {

constexpr unsigned long waitOnDestructionMs = 1000;

}

Thread::Thread() : stopRequested(false), runsUnderWay(0) { }

Thread::~Thread()
{
    if (!implementation.IsNull()) {
        Stop(waitOnDestructionMs);
    }
    stopRequested = true;
    WaitForRunsToEnd();
}

Diagnostics::String Thread::GetValueString() const
{
    return implementation.IsNull() ? Diagnostics::String("Thread not started") : implementation->GetValueString();
}

void Thread::Start()
{
    SmartPointer<ThreadImplementation> started = ResolveAs<ThreadImplementation>("ThreadImplementation");
    if (started.IsNull()) {
        throw ExceptionMultithreading("Could not load thread implementation");
    }
    stopRequested = true;
    WaitForRunsToEnd();
    implementation = started;
    stopRequested = false;
    implementation->Start(this);
}

void Thread::Stop(unsigned long waitMs)
{
    if (implementation.IsNull()) {
        return;
    }
    stopRequested = true;
    implementation->Stop(waitMs);
    implementation = SmartPointer<ThreadImplementation>();
}

bool Thread::IsStopRequested() const
{
    return stopRequested;
}

void Thread::EnterRun()
{
    std::lock_guard<std::mutex> held(runGuard);
    ++runsUnderWay;
}

// Notified under the guard: the waiter can't return, and so can't destroy this object, before
// the guard is let go, and after that the ending thread touches nothing of it.
void Thread::LeaveRun()
{
    std::lock_guard<std::mutex> held(runGuard);
    --runsUnderWay;
    runEnded.notify_all();
}

void Thread::WaitForRunsToEnd()
{
    std::unique_lock<std::mutex> held(runGuard);
    runEnded.wait(held, [this] { return runsUnderWay == 0; });
}

}
