#include "utilities/platform/FileLock.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <system_error>
#include <thread>

#include "utilities/ExceptionMultithreading.h"
#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

constexpr std::chrono::milliseconds firstRetryStep{1};
constexpr std::chrono::milliseconds longestRetryStep{5};

// The lock covers the file's first byte, whether or not the file has one.
bool LockFirstByte(int descriptor, DWORD flags)
{
    OVERLAPPED start{};
    const auto file = reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
    return ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | flags, 0, 1, 0, &start) != 0;
}

}

FileLock::FileLock(const std::string& path)
    : descriptor(::_wopen(
          WideText::FromNarrow(path).c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE))
{
    if (descriptor < 0) {
        const std::string reason = std::generic_category().message(errno);
        throw ExceptionMultithreading(("Could not open lock file " + path + " (" + reason + ")").c_str());
    }
}

FileLock::~FileLock()
{
    ::_close(descriptor);
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
    return LockFirstByte(descriptor, 0);
}

void FileLock::Unlock()
{
    OVERLAPPED start{};
    ::UnlockFileEx(reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor)), 0, 1, 0, &start);
}

bool FileLock::TryLock()
{
    return LockFirstByte(descriptor, LOCKFILE_FAIL_IMMEDIATELY);
}

}
