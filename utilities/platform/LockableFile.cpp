#include "utilities/platform/LockableFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

namespace {

bool LockExclusively(int descriptor, int flags)
{
    int result = 0;
    do {
        result = ::flock(descriptor, LOCK_EX | flags);
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
    return LockExclusively(descriptor, LOCK_NB);
}

bool LockableFile::Lock()
{
    return LockExclusively(descriptor, 0);
}

void LockableFile::Unlock()
{
    ::flock(descriptor, LOCK_UN);
}

}
