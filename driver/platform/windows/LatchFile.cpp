#include "driver/platform/LatchFile.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/platform/windows/WideText.h"

namespace DeviceDriver {

namespace {

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

// The count lies behind the locked first byte, which Windows keeps other handles from reading.
OVERLAPPED CountPosition()
{
    OVERLAPPED at{};
    at.Offset = 1;
    return at;
}

}

LatchFile::LatchFile(const std::string& path) : descriptor(OpenFile(path)) { }

LatchFile::~LatchFile()
{
    ::_close(descriptor);
}

void LatchFile::Lock()
{
    LockFile(descriptor, LOCKFILE_EXCLUSIVE_LOCK);
}

void LatchFile::Unlock()
{
    OVERLAPPED start{};
    ::UnlockFileEx(Handle(descriptor), 0, 1, 0, &start);
}

// A lock of Windows can't turn from exclusive into shared as a flock does: the first holder lets
// go of its exclusive lock before it takes the shared one, while the count's lock keeps every
// other holder out.
bool LatchFile::LockShared()
{
    const bool alone = LockFile(descriptor, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY);
    if (alone) {
        Unlock();
    }
    LockFile(descriptor, 0);
    return alone;
}

std::optional<char> LatchFile::ReadCount()
{
    char count = 0;
    DWORD read = 0;
    OVERLAPPED at = CountPosition();
    const bool done = ::ReadFile(Handle(descriptor), &count, 1, &read, &at) != 0 && read == 1;
    return done ? std::optional<char>(count) : std::nullopt;
}

bool LatchFile::WriteCount(char count)
{
    DWORD written = 0;
    OVERLAPPED at = CountPosition();
    return ::WriteFile(Handle(descriptor), &count, 1, &written, &at) != 0 && written == 1;
}

}
