#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "utilities/FileLock.h"

namespace Utilities {

// The lock object behind a Mutex: recursive for the thread that holds it, with a time-out.
// In the process it is guarded by a condition variable; a named one also holds the file lock
// of its name, taken after the threads of this process have settled who gets it, since a
// flock is held by the process and not by a thread.
class SystemMutex {
public:
    static constexpr unsigned long waitForEver = 4294967295UL;

    // fileLock null: a lock private to this process.
    explicit SystemMutex(std::unique_ptr<FileLock> fileLock);

    bool Lock(unsigned long timeoutMs);

    // False when the calling thread doesn't hold the lock; then nothing changes.
    bool Unlock();

private:
    using Clock = std::chrono::steady_clock;

    bool WaitUntilFree(std::unique_lock<std::mutex>& held, unsigned long timeoutMs, Clock::time_point deadline);
    bool LockFile(unsigned long timeoutMs, Clock::time_point deadline);

    std::mutex guard;
    std::condition_variable released;
    std::thread::id owner;
    unsigned long depth;
    std::unique_ptr<FileLock> fileLock;
};

}
