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

// The lock covers the file's first byte, whether or not the file has one.
bool LockFirstByte(int descriptor, DWORD flags)
{
    OVERLAPPED start{};
    return ::LockFileEx(LockedHandle(descriptor), LOCKFILE_EXCLUSIVE_LOCK | flags, 0, 1, 0, &start) != 0;
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
    return LockFirstByte(descriptor, LOCKFILE_FAIL_IMMEDIATELY);
}

bool LockableFile::Lock()
{
    return LockFirstByte(descriptor, 0);
}

void LockableFile::Unlock()
{
    OVERLAPPED start{};
    ::UnlockFileEx(LockedHandle(descriptor), 0, 1, 0, &start);
}

}
