#include "utilities/FileLock.h"

#include <algorithm>
#include <thread>

namespace Utilities {

namespace {

constexpr std::chrono::milliseconds firstRetryStep{1};
constexpr std::chrono::milliseconds longestRetryStep{5};

}

FileLock::FileLock(const std::string& path) : file(path) { }

bool FileLock::LockUntil(std::chrono::steady_clock::time_point deadline)
{
    auto step = firstRetryStep;
    while (!file.TryLock()) {
        const auto now = std::chrono::steady_clock::now();
        if (now >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::min<std::chrono::steady_clock::duration>(step, deadline - now));
        step = std::min(step * 2, longestRetryStep);
    }
    return true;
}

bool FileLock::LockForEver()
{
    return file.Lock();
}

void FileLock::Unlock()
{
    file.Unlock();
}

}
