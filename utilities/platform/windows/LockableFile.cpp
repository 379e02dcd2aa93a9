#include "utilities/platform/LockableFile.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <system_error>

#include "utilities/ExceptionMultithreading.h"
#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

HANDLE LockedHandle(int descriptor)
{
    return reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
}

// The lock covers the file's first byte, whether or not the file has one; without
// LOCKFILE_EXCLUSIVE_LOCK it is a shared one.
bool LockFirstByte(int descriptor, DWORD flags)
{
    OVERLAPPED start{};
    return ::LockFileEx(LockedHandle(descriptor), flags, 0, 1, 0, &start) != 0;
}

// The shared byte lies behind the locked first one, which Windows keeps other handles from reading.
OVERLAPPED SharedBytePosition()
{
    OVERLAPPED at{};
    at.Offset = 1;
    return at;
}

}

LockableFile::LockableFile(const std::string& path)
    : descriptor(::_wopen(
          WideText::FromNarrow(path).c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE))
{
    if (descriptor < 0) {
        const std::string reason = std::generic_category().message(errno);
        throw ExceptionMultithreading(("Could not open lock file " + path + " (" + reason + ")").c_str());
    }
}

LockableFile::~LockableFile()
{
    ::_close(descriptor);
}

bool LockableFile::TryLock()
{
    return LockFirstByte(descriptor, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY);
}

bool LockableFile::Lock()
{
    return LockFirstByte(descriptor, LOCKFILE_EXCLUSIVE_LOCK);
}

void LockableFile::Unlock()
{
    OVERLAPPED start{};
    ::UnlockFileEx(LockedHandle(descriptor), 0, 1, 0, &start);
}

// A lock of Windows can't turn from exclusive into shared as a flock does: the first holder lets
// go of its exclusive lock before it takes the shared one, and a lock of the caller's keeps every
// other holder out meanwhile.
bool LockableFile::LockShared()
{
    const bool alone = TryLock();
    if (alone) {
        Unlock();
    }
    LockFirstByte(descriptor, 0);
    return alone;
}

std::optional<char> LockableFile::ReadByte()
{
    char byte = 0;
    DWORD read = 0;
    OVERLAPPED at = SharedBytePosition();
    const bool done = ::ReadFile(LockedHandle(descriptor), &byte, 1, &read, &at) != 0 && read == 1;
    return done ? std::optional<char>(byte) : std::nullopt;
}

bool LockableFile::WriteByte(char byte)
{
    DWORD written = 0;
    OVERLAPPED at = SharedBytePosition();
    return ::WriteFile(LockedHandle(descriptor), &byte, 1, &written, &at) != 0 && written == 1;
}

}
