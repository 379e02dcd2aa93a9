#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <thread>

#include "utilities/ThreadImplementation.h"
#include "utilities/platform/ThreadCompletion.h"

namespace Utilities {

// The thread of a Thread on POSIX. Its entry runs Thread::Run inside a catch-all: an exception
// ends the thread with the exit code 4294967295 and goes no further.
//
// Stop waits for the end of the run and returns as soon as it comes. A thread can't be killed
// safely here, so one that hasn't ended after the wait is detached and left to finish on its
// own; its exit code reads 99999, as for a thread ended by force. The Thread waits for such a
// run before it goes or starts again.
class ThreadImplementation_PC : public ThreadImplementation {
public:
    static constexpr uint32_t exitCodeOfFailure = 4294967295U;
    static constexpr uint32_t exitCodeOfOverrun = 99999U;

    ThreadImplementation_PC() = default;
    ThreadImplementation_PC(const ThreadImplementation_PC&) = delete;
    ThreadImplementation_PC& operator=(const ThreadImplementation_PC&) = delete;
    ~ThreadImplementation_PC() override;

    Diagnostics::String GetValueString() const override;
    void Stop(unsigned long waitMs) override;

    // Raises ExceptionMultithreading with "Could not start thread" when the system refuses.
    void Start(Thread* thread) override;

    // Empty before Start and while the thread runs.
    std::optional<uint32_t> ExitCode() const;

private:
    static void Execute(Thread* thread, std::shared_ptr<ThreadCompletion> completion);
    static uint32_t RunCaught(Thread* thread);

    std::thread worker;
    std::shared_ptr<ThreadCompletion> completion;
    bool overran = false;
};

}
