#pragma once

#include <chrono>
#include <string>

namespace Utilities {

// An exclusive lock on a file (flock on POSIX, LockFileEx on Windows), shared with every process
// that locks the same file. The system drops it when the process ends, however it ends, so a
// crashed holder never keeps others out.
class FileLock {
public:
    // Opens the file, made if missing. Raises ExceptionMultithreading when it can't be opened.
    explicit FileLock(const std::string& path);
    ~FileLock();

    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    // Neither system call waits with a time-out, so a bounded wait tries again in short steps.
    bool LockUntil(std::chrono::steady_clock::time_point deadline);
    bool LockForEver();
    void Unlock();

private:
    bool TryLock();

    int descriptor;
};

}
