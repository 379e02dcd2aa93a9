#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "diagnostics/String.h"
#include "utilities/SmartPointer.h"
#include "utilities/ThreadImplementation.h"

namespace Utilities {

// A thread of the system: derive, put the work into Run, and test IsStopRequested there often.
//
// Stopping is cooperative, as a thread can't be killed safely on POSIX. Stop(waitMs) asks Run
// to end and returns as soon as it has, or after waitMs at the latest. A run that overruns the
// wait is left to finish on its own (its exit code then reads 99999); the Thread keeps track of
// it, so that its destructor and the next Start wait for that run to end instead of pulling the
// object away under it.
//
// A derived class stops its thread in its own destructor: by the time ~Thread runs, the derived
// members that Run uses are already gone.
class Thread {
public:
    Thread();
    virtual ~Thread();

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    virtual Diagnostics::String GetValueString() const;

    // What the new thread executes; its result is the thread's exit code.
    virtual uint32_t Run() = 0;

    // Raises ExceptionMultithreading with "Could not load thread implementation" when there is
    // no "ThreadImplementation" component. A run that is still going is asked to stop and waited
    // for first: two runs never share one Thread.
    void Start();

    // Does nothing on a Thread that isn't started.
    void Stop(unsigned long waitMs);

    bool IsStopRequested() const;

    // For the ThreadImplementation: a run begins before its thread is made, and ends as the
    // last thing its thread does with this object.
    void EnterRun();
    void LeaveRun();

private:
    void WaitForRunsToEnd();

    std::atomic<bool> stopRequested;
    SmartPointer<ThreadImplementation> implementation;
    std::mutex runGuard;
    std::condition_variable runEnded;
    unsigned runsUnderWay;
};

}
