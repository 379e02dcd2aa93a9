#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>

namespace Utilities {

// The end of one run of a thread, shared by the thread and whoever waits for it, so that a
// thread left to finish on its own still has somewhere to report to.
class ThreadCompletion {
public:
    void Finish(uint32_t exitCode);

    // True as soon as the run has ended; false when waitMs passed first.
    bool WaitFor(unsigned long waitMs);

    // Empty while the run goes on.
    std::optional<uint32_t> ExitCode() const;

private:
    mutable std::mutex guard;
    std::condition_variable finished;
    std::optional<uint32_t> exitCode;
};

}
