#include "utilities/platform/LockableFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

namespace {

bool LockFile(int descriptor, int operation)
{
    int result = 0;
    do {
        result = ::flock(descriptor, operation);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

}

LockableFile::LockableFile(const std::string& path)
    : descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600))
{
    if (descriptor < 0) {
        throw ExceptionMultithreading(("Could not open lock file " + path + " (" + std::strerror(errno) + ")").c_str());
    }
}

LockableFile::~LockableFile()
{
    ::close(descriptor);
}

bool LockableFile::TryLock()
{
    return LockFile(descriptor, LOCK_EX | LOCK_NB);
}

bool LockableFile::Lock()
{
    return LockFile(descriptor, LOCK_EX);
}

void LockableFile::Unlock()
{
    ::flock(descriptor, LOCK_UN);
}

// An exclusive lock turns into a shared one in place.
bool LockableFile::LockShared()
{
    const bool alone = TryLock();
    LockFile(descriptor, LOCK_SH);
    return alone;
}

std::optional<char> LockableFile::ReadByte()
{
    char byte = 0;
    return ::pread(descriptor, &byte, 1, 0) == 1 ? std::optional<char>(byte) : std::nullopt;
}

bool LockableFile::WriteByte(char byte)
{
    return ::pwrite(descriptor, &byte, 1, 0) == 1;
}

}
