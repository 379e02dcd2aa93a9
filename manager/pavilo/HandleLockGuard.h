#pragma once

#include "driver/MeasurementHandle.h"

namespace HviManager::PaviloDriver {

// The lock of a measurement handle for the span of one interface operation. Whatever way the
// operation leaves, exceptions included, the lock goes with the guard, unless the operation hands
// it on to the fetch of its result.
class HandleLockGuard {
public:
    explicit HandleLockGuard(DeviceDriver::MeasurementHandle& handle);
    ~HandleLockGuard();
    HandleLockGuard(const HandleLockGuard&) = delete;
    HandleLockGuard& operator=(const HandleLockGuard&) = delete;

    // False when the lock wasn't had within the handle's time-out.
    bool Acquire(unsigned long timeoutMs = DeviceDriver::MeasurementHandle::lockTimeoutMs);
    // Takes over the lock that the measurement left held; it goes with the guard.
    void TakeOver();
    // Takes over the lock that the measurement left held and fetches its spectrum.
    DeviceDriver::SpectrumData FetchResult();
    // Leaves the lock held beyond the guard, for the operation that fetches the result.
    void KeepHeld();
    // Throws the handle's last error as an ExceptionHviModule; the lock goes on the way out.
    [[noreturn]] void FailWithLastError();

private:
    DeviceDriver::MeasurementHandle& handle;
    bool held;
};

}
