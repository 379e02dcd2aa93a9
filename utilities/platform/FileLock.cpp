#include "utilities/platform/FileLock.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

namespace {

constexpr std::chrono::milliseconds firstRetryStep{1};
constexpr std::chrono::milliseconds longestRetryStep{5};

}

FileLock::FileLock(const std::string& path)
    : descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600))
{
    if (descriptor < 0) {
        throw ExceptionMultithreading(("Could not open lock file " + path + " (" + std::strerror(errno) + ")").c_str());
    }
}

FileLock::~FileLock()
{
    ::close(descriptor);
}

bool FileLock::LockUntil(std::chrono::steady_clock::time_point deadline)
{
    auto step = firstRetryStep;
    while (!TryLock()) {
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
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

void FileLock::Unlock()
{
    ::flock(descriptor, LOCK_UN);
}

bool FileLock::TryLock()
{
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

}
