#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <thread>

#include "driver/InterruptLatch.h"
#include "tests/support/TemporaryLockDirectory.h"
#include "utilities/ExceptionResourceNotAvailable.h"
#include "utilities/platform/LockDirectory.h"

using DeviceDriver::InterruptLatch;

namespace {

class InterruptLatchTest : public testing::Test {
protected:
    TemporaryLockDirectory lockDirectory;
};

TEST_F(InterruptLatchTest, HoldersOfOneNameShareOneCountThatStartsAtOne)
{
    InterruptLatch first("latch");
    EXPECT_FALSE(first.Release());
    EXPECT_TRUE(first.Take(0));
    InterruptLatch second("latch");
    InterruptLatch unrelated("other");
    EXPECT_FALSE(second.Take(0));
    EXPECT_TRUE(unrelated.Take(0));
    EXPECT_TRUE(second.Release());
    EXPECT_TRUE(first.Take(0));
}

TEST_F(InterruptLatchTest, FirstHolderAfterTheLastOneLeftStartsAtOneAgain)
{
    {
        InterruptLatch gone("latch");
        ASSERT_TRUE(gone.Take(0));
    }
    InterruptLatch next("latch");
    EXPECT_TRUE(next.Take(0));
}

TEST_F(InterruptLatchTest, TakeWaitsUpToItsTimeOutForARelease)
{
    using namespace std::chrono_literals;
    InterruptLatch latch("latch");
    ASSERT_TRUE(latch.Take(0));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(latch.Take(20));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);

    auto release = std::async(std::launch::async, [] {
        std::this_thread::sleep_for(10ms);
        return InterruptLatch("latch").Release();
    });
    EXPECT_TRUE(latch.Take(60000));
    EXPECT_TRUE(release.get());
}

// A directory where a file of the latch belongs can't be opened as one.
TEST_F(InterruptLatchTest, FileThatCantBeOpenedRaisesAndSpoilsNothing)
{
    const struct {
        std::string name;
        std::string blockedFile;
    } cases[] = {{"count", "count"}, {"holders", "holders-holders"}};
    for (const auto& blocked : cases) {
        const std::filesystem::path blocker = Utilities::LockDirectory::LockFilePath(blocked.blockedFile);
        std::filesystem::create_directory(blocker);
        EXPECT_THROW(InterruptLatch{blocked.name}, Utilities::ExceptionResourceNotAvailable) << blocked.name;
        std::filesystem::remove(blocker);
        InterruptLatch latch(blocked.name);
        EXPECT_TRUE(latch.Take(0)) << blocked.name;
    }
}

}
