#pragma once

#include <chrono>
#include <string>

#include "utilities/platform/LockableFile.h"

namespace Utilities {

// An exclusive lock on a file, shared with every process that locks the same file. The system
// drops it when the process ends, however it ends, so a crashed holder never keeps others out.
class FileLock {
public:
    // Opens the file, made if missing. Raises ExceptionMultithreading when it can't be opened.
    explicit FileLock(const std::string& path);

    // The system waits for a lock without a time-out only, so a bounded wait tries again in
    // short steps.
    bool LockUntil(std::chrono::steady_clock::time_point deadline);
    bool LockForEver();
    void Unlock();

private:
    LockableFile file;
};

}
