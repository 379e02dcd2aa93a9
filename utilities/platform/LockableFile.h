#pragma once

#include <string>

namespace Utilities {

// A file opened for an exclusive lock of the system (flock on POSIX, LockFileEx on Windows).
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

private:
    int descriptor;
};

}
