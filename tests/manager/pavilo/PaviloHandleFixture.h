#pragma once
// Handles opened directly on a virtual instrument, for the tests of the interfaces built on them,
// and what the instrument was last told.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/driver/PaviloSimFixture.h"
#include "utilities/Exception.h"
#include "utilities/SmartPointer.h"

namespace HviManagerTest {

class PaviloHandleFixture : public DeviceDriverTest::PaviloSimFixture {
protected:
    static constexpr int lampOffFlag = 0x02;
    static constexpr int lowGainFlag = 0x04;
    static constexpr int lampOnAfterFlag = 0x08;

    template<class Handle>
    Utilities::SmartPointer<Handle> OpenHandle()
    {
        Utilities::SmartPointer<Handle> handle(new Handle);
        EXPECT_TRUE(handle->Connect(sim.Path().c_str()));
        EXPECT_TRUE(handle->Open()) << handle->GetLastError().ToStdString();
        return handle;
    }

    // Starts the instrument again with a UV-cut filter fitted.
    void RestartWithUvCut() const
    {
        sim.Command({"stop"});
        sim.Command({"start", "--uv-cut", "--noise", "off", "--time-scale", "0"});
    }

    // The measure parameter the instrument was last given: "count", "flags", "integration_ticks".
    int Parameter(const std::string& name) const { return static_cast<int>(Counter(name)); }

    // Whether another thread gets the handle's lock at once; it gives the lock back at once.
    template<class Handle>
    static bool LockIsFreeForOtherThreads(const Utilities::SmartPointer<Handle>& handle)
    {
        auto attempt = std::async(std::launch::async, [handle] {
            const bool locked = handle->Lock();
            if (locked) {
                handle->Unlock();
            }
            return locked;
        });
        return attempt.wait_for(std::chrono::seconds(3)) == std::future_status::ready && attempt.get();
    }

    // Whether work, run on another thread, waits until release has run on this one.
    static bool WaitsFor(const std::function<void()>& release, const std::function<void()>& work)
    {
        std::atomic<bool> done{false};
        std::thread other([&] {
            work();
            done = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        const bool waited = !done;
        release();
        other.join();
        return waited && done;
    }

    // The text of the Exception that work throws; "no failure" if it throws none.
    static std::string FailureText(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const Utilities::Exception& failure) {
            return failure.Text()->ToStdString();
        }
        return "no failure";
    }
};

}
