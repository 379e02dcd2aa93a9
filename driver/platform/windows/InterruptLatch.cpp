#include "driver/platform/InterruptLatch.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <chrono>
#include <string>
#include <thread>

#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/platform/LockDirectory.h"
#include "utilities/platform/windows/WideText.h"

namespace DeviceDriver {

namespace {

constexpr char countZero = '0';
constexpr char countOne = '1';
constexpr std::chrono::milliseconds retryStep{1};

int OpenFile(const std::string& path)
{
    const int file = ::_wopen(Utilities::WideText::FromNarrow(path).c_str(),
        _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
    if (file < 0) {
        throw Utilities::ExceptionResourceNotAvailable(("Interrupt latch not available: " + path).c_str());
    }
    return file;
}

HANDLE Handle(int file)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(file));
}

// A lock of the file's first byte; without LOCKFILE_EXCLUSIVE_LOCK a shared one.
bool LockFile(int file, DWORD flags)
{
    OVERLAPPED start{};
    return ::LockFileEx(Handle(file), flags, 0, 1, 0, &start) != 0;
}

void UnlockFile(int file)
{
    OVERLAPPED start{};
    ::UnlockFileEx(Handle(file), 0, 1, 0, &start);
}

}

// A lock of Windows can't turn from exclusive into shared as a flock does: the first holder lets
// go of its exclusive lock before it takes the shared one, while the count's lock keeps every
// other holder out.
InterruptLatch::InterruptLatch(const Utilities::String& name)
    : countFile(OpenFile(Utilities::LockDirectory::LockFilePath(name.ToStdString()))), holdersFile(-1)
{
    try {
        holdersFile = OpenFile(Utilities::LockDirectory::LockFilePath(name.ToStdString() + "-holders"));
    } catch (...) {
        ::_close(countFile);
        throw;
    }
    LockCount();
    if (LockFile(holdersFile, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY)) {
        WriteCount(countOne);
        UnlockFile(holdersFile);
    }
    LockFile(holdersFile, 0);
    UnlockCount();
}

InterruptLatch::~InterruptLatch()
{
    ::_close(holdersFile);
    ::_close(countFile);
}

bool InterruptLatch::Take(std::uint32_t timeoutMs)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!Change(countOne, countZero)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(retryStep);
    }
    return true;
}

bool InterruptLatch::Release()
{
    return Change(countZero, countOne);
}

bool InterruptLatch::Change(char from, char to)
{
    LockCount();
    const bool changed = ReadCount() == from && WriteCount(to);
    UnlockCount();
    return changed;
}

void InterruptLatch::LockCount()
{
    LockFile(countFile, LOCKFILE_EXCLUSIVE_LOCK);
}

void InterruptLatch::UnlockCount()
{
    UnlockFile(countFile);
}

// A file that no holder has written yet holds the initial count. The count lies behind the
// locked first byte, which Windows keeps other handles from reading.
char InterruptLatch::ReadCount()
{
    char count = countOne;
    DWORD read = 0;
    OVERLAPPED at{};
    at.Offset = 1;
    return ::ReadFile(Handle(countFile), &count, 1, &read, &at) != 0 && read == 1 ? count : countOne;
}

bool InterruptLatch::WriteCount(char count)
{
    DWORD written = 0;
    OVERLAPPED at{};
    at.Offset = 1;
    return ::WriteFile(Handle(countFile), &count, 1, &written, &at) != 0 && written == 1;
}

}
