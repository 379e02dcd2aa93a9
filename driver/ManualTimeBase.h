#pragma once

#include <atomic>
#include <cstdint>

#include "driver/TimeBase.h"

namespace DeviceDriver {

// A clock for tests that stands still until it is moved: a sleep returns at once and moves it
// on by the time slept, and the sum of the sleeps tells how long the code has waited. Code
// that polls in a loop sleeps without pause under it; such tests want a ScaledTimeBase.
class ManualTimeBase : public TimeBase {
public:
    // 2023-11-14 22:13:20 UTC
    static constexpr int64_t defaultStart = 1700000000LL * 1000000;

    explicit ManualTimeBase(int64_t startMicroseconds = defaultStart);
    ~ManualTimeBase() override;

    int64_t MicrosecondsSince1970() override { return now; }
    void Sleep(int64_t microseconds) override;

    void Advance(int64_t microseconds) { now += microseconds; }
    int64_t SleptMicroseconds() const { return slept; }

private:
    std::atomic<int64_t> now;
    std::atomic<int64_t> slept;
};

}
