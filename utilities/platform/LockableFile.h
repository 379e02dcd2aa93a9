#pragma once

#include <optional>
#include <string>

namespace Utilities {

// A file opened for a lock of the system (flock on POSIX, LockFileEx on Windows), with room for
// one byte that its holders share.
class LockableFile {
public:
    // Opens the file, made if missing. Raises ExceptionMultithreading when it can't be opened.
    explicit LockableFile(const std::string& path);
    ~LockableFile();
    LockableFile(const LockableFile&) = delete;
    LockableFile& operator=(const LockableFile&) = delete;

    // False at once when another holder has the lock.
    bool TryLock();
    // Waits as long as another holder has the lock.
    bool Lock();
    void Unlock();
    // Takes a shared lock; true when no other holder had one.
    bool LockShared();

    // Empty when nothing has been written yet.
    std::optional<char> ReadByte();
    bool WriteByte(char byte);

private:
    int descriptor;
};

}
