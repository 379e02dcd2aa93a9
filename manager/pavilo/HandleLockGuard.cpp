#include "manager/pavilo/HandleLockGuard.h"

#include "manager/ExceptionHviModule.h"

namespace HviManager::PaviloDriver {

HandleLockGuard::HandleLockGuard(DeviceDriver::MeasurementHandle& handle) : handle(handle), held(false) { }

HandleLockGuard::~HandleLockGuard()
{
    if (held) {
        handle.Unlock();
    }
}

bool HandleLockGuard::Acquire(unsigned long timeoutMs)
{
    held = handle.Lock(timeoutMs);
    return held;
}

void HandleLockGuard::TakeOver()
{
    held = true;
}

DeviceDriver::SpectrumData HandleLockGuard::FetchResult()
{
    TakeOver();
    DeviceDriver::SpectrumData result;
    if (!handle.GetResult(result)) {
        FailWithLastError();
    }
    return result;
}

void HandleLockGuard::KeepHeld()
{
    held = false;
}

void HandleLockGuard::FailWithLastError()
{
    // Read before the lock goes, so that no other thread's failure takes its place.
    throw ExceptionHviModule(handle.GetLastError());
}

}
