#include "utilities/Thread.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "diagnostics/DebugTraceItem.h"
#include "utilities/ExceptionMultithreading.h"
#include "utilities/ResolveAs.h"

namespace Utilities {

namespace {

constexpr unsigned long waitOnDestructionMs = 1000;

}

Thread::Thread(const char* name, unsigned long overrunBoundMs)
    : name(name), overrunBoundMs(overrunBoundMs), stopRequested(false), runsUnderWay(0)
{
}

Thread::~Thread()
{
    if (!implementation.IsNull()) {
        Stop(waitOnDestructionMs);
    }
    stopRequested = true;
    if (!WaitForRunsToEnd(overrunBoundMs)) {
        AbortForOverrun();
    }
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
    if (!WaitForRunsToEnd(0)) {
        throw ExceptionMultithreading("Could not start thread: its previous run has not ended");
    }
    implementation = started;
    stopRequested = false;
    implementation->Start(this);
}

bool Thread::Stop(unsigned long waitMs)
{
    if (implementation.IsNull()) {
        return WaitForRunsToEnd(waitMs);
    }
    stopRequested = true;
    implementation->Stop(waitMs);
    implementation = SmartPointer<ThreadImplementation>();
    return WaitForRunsToEnd(0);
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

bool Thread::WaitForRunsToEnd(unsigned long waitMs)
{
    std::unique_lock<std::mutex> held(runGuard);
    return runEnded.wait_for(held, std::chrono::milliseconds(waitMs), [this] { return runsUnderWay == 0; });
}

void Thread::AbortForOverrun() const
{
    const std::string text = std::string("Thread \"") + name + "\" ignored the request to stop for " +
        std::to_string(overrunBoundMs) + " ms; ending the process";
    Diagnostics::DebugTraceItem trace("Utilities", "Thread", "~Thread", this);
    trace.AddParameter(text.c_str());
    trace.LogCall();
    std::fprintf(stderr, "%s\n", text.c_str());
    std::abort();
}

}
