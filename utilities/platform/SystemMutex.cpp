#include "utilities/platform/SystemMutex.h"

namespace Utilities {

SystemMutex::SystemMutex(std::unique_ptr<FileLock> fileLock) : depth(0), fileLock(std::move(fileLock)) { }

bool SystemMutex::Lock(unsigned long timeoutMs)
{
    const auto deadline = Clock::now() + std::chrono::milliseconds(timeoutMs < waitForEver ? timeoutMs : 0);
    const auto caller = std::this_thread::get_id();
    std::unique_lock<std::mutex> held(guard);
    if (owner == caller) {
        ++depth;
        return true;
    }
    if (!WaitUntilFree(held, timeoutMs, deadline)) {
        return false;
    }
    // Claimed in this process; the others wait on the condition while the file lock is taken.
    owner = caller;
    held.unlock();
    const bool locked = LockFile(timeoutMs, deadline);
    held.lock();
    if (!locked) {
        owner = std::thread::id();
        released.notify_one();
        return false;
    }
    depth = 1;
    return true;
}

bool SystemMutex::Unlock()
{
    std::lock_guard<std::mutex> held(guard);
    if (owner != std::this_thread::get_id() || depth == 0) {
        return false;
    }
    if (--depth > 0) {
        return true;
    }
    if (fileLock) {
        fileLock->Unlock();
    }
    owner = std::thread::id();
    released.notify_one();
    return true;
}

bool SystemMutex::WaitUntilFree(std::unique_lock<std::mutex>& held, unsigned long timeoutMs, Clock::time_point deadline)
{
    const auto isFree = [this] { return owner == std::thread::id(); };
    if (timeoutMs >= waitForEver) {
        released.wait(held, isFree);
        return true;
    }
    return released.wait_until(held, deadline, isFree);
}

bool SystemMutex::LockFile(unsigned long timeoutMs, Clock::time_point deadline)
{
    if (!fileLock) {
        return true;
    }
    return timeoutMs >= waitForEver ? fileLock->LockForEver() : fileLock->LockUntil(deadline);
}

}
