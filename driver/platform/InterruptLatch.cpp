#include "driver/platform/InterruptLatch.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/platform/LockDirectory.h"

namespace DeviceDriver {

namespace {

constexpr char countZero = '0';
constexpr char countOne = '1';
constexpr std::chrono::milliseconds retryStep{1};

int OpenFile(const std::string& path)
{
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0) {
        throw Utilities::ExceptionResourceNotAvailable(("Interrupt latch not available: " + path).c_str());
    }
    return file;
}

void LockFile(int file, int operation)
{
    while (::flock(file, operation) != 0 && errno == EINTR) {
    }
}

}

InterruptLatch::InterruptLatch(const Utilities::String& name)
    : countFile(OpenFile(Utilities::LockDirectory::LockFilePath(name.ToStdString()))), holdersFile(-1)
{
    try {
        holdersFile = OpenFile(Utilities::LockDirectory::LockFilePath(name.ToStdString() + "-holders"));
    } catch (...) {
        ::close(countFile);
        throw;
    }
    LockCount();
    if (::flock(holdersFile, LOCK_EX | LOCK_NB) == 0) {
        WriteCount(countOne);
    }
    LockFile(holdersFile, LOCK_SH);
    UnlockCount();
}

InterruptLatch::~InterruptLatch()
{
    ::close(holdersFile);
    ::close(countFile);
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
    LockFile(countFile, LOCK_EX);
}

void InterruptLatch::UnlockCount()
{
    LockFile(countFile, LOCK_UN);
}

// A file that no holder has written yet holds the initial count.
char InterruptLatch::ReadCount()
{
    char count = countOne;
    return ::pread(countFile, &count, 1, 0) == 1 ? count : countOne;
}

bool InterruptLatch::WriteCount(char count)
{
    return ::pwrite(countFile, &count, 1, 0) == 1;
}

}
