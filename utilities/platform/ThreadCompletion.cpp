#include "utilities/platform/ThreadCompletion.h"

#include <chrono>

namespace Utilities {

void ThreadCompletion::Finish(uint32_t code)
{
    std::lock_guard<std::mutex> held(guard);
    exitCode = code;
    finished.notify_all();
}

bool ThreadCompletion::WaitFor(unsigned long waitMs)
{
    std::unique_lock<std::mutex> held(guard);
    return finished.wait_for(held, std::chrono::milliseconds(waitMs), [this] { return exitCode.has_value(); });
}

std::optional<uint32_t> ThreadCompletion::ExitCode() const
{
    std::lock_guard<std::mutex> held(guard);
    return exitCode;
}

}
