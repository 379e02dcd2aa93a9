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
// it, and nothing waits for it without a bound:
// - Stop answers false when the run is still going after waitMs; a later Stop waits again.
// - Start refuses, with ExceptionMultithreading, while an earlier run is still going.
// - The destructor stops the run with a wait of one second, then waits up to the overrun bound
//   (defaultOverrunBoundMs unless the derived class states its own) for an overrunning run. A run still going after
//   that would be left using a destroyed object, so the destructor traces it and aborts the process with a message
//   naming the thread: a diagnosable end instead of a host that hangs for ever.
//
// A derived class stops its thread in its own destructor: by the time ~Thread runs, the derived
// members that Run uses are already gone.
class Thread {
public:
    // Longer than any step of the system's runs, the waits for the instrument's lock included.
    static constexpr unsigned long defaultOverrunBoundMs = 30000;

    // The name is what the abort of an overrunning run tells.
    explicit Thread(const char* name, unsigned long overrunBoundMs = defaultOverrunBoundMs);
    virtual ~Thread();

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    virtual Diagnostics::String GetValueString() const;

    // What the new thread executes; its result is the thread's exit code.
    virtual uint32_t Run() = 0;

    // Raises ExceptionMultithreading with "Could not load thread implementation" when there is
    // no "ThreadImplementation" component, and with "Could not start thread: its previous run
    // has not ended" while a run is going: two runs never share one Thread.
    void Start();

    // True when no run is going any more. On a Thread that isn't started it asks nothing and
    // only waits up to waitMs for an overrunning run.
    bool Stop(unsigned long waitMs);

    bool IsStopRequested() const;

    // For the ThreadImplementation: a run begins before its thread is made, and ends as the
    // last thing its thread does with this object.
    void EnterRun();
    void LeaveRun();

private:
    bool WaitForRunsToEnd(unsigned long waitMs);
    [[noreturn]] void AbortForOverrun() const;

    const char* const name;
    const unsigned long overrunBoundMs;
    std::atomic<bool> stopRequested;
    SmartPointer<ThreadImplementation> implementation;
    std::mutex runGuard;
    std::condition_variable runEnded;
    unsigned runsUnderWay;
};

}
