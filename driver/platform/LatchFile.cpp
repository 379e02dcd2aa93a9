#include "driver/platform/LatchFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "utilities/ExceptionResourceNotAvailable.h"

namespace DeviceDriver {

namespace {

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

LatchFile::LatchFile(const std::string& path) : descriptor(OpenFile(path)) { }

LatchFile::~LatchFile()
{
    ::close(descriptor);
}

void LatchFile::Lock()
{
    LockFile(descriptor, LOCK_EX);
}

void LatchFile::Unlock()
{
    LockFile(descriptor, LOCK_UN);
}

// An exclusive lock turns into a shared one in place.
bool LatchFile::LockShared()
{
    const bool alone = ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    LockFile(descriptor, LOCK_SH);
    return alone;
}

std::optional<char> LatchFile::ReadCount()
{
    char count = 0;
    return ::pread(descriptor, &count, 1, 0) == 1 ? std::optional<char>(count) : std::nullopt;
}

bool LatchFile::WriteCount(char count)
{
    return ::pwrite(descriptor, &count, 1, 0) == 1;
}

}
