#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "tests/support/HolderProcess.h"
#include "tests/support/TemporaryLockDirectory.h"
#include "tests/utilities/FailureText.h"
#include "utilities/ExceptionMultithreading.h"
#include "utilities/Mutex.h"
#include "utilities/platform/LockDirectory.h"

using Utilities::ExceptionMultithreading;
using Utilities::LockDirectory;
using Utilities::Mutex;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

// Far below every wait the tests give, far above any scheduling delay.
constexpr auto promptly = 2s;
constexpr unsigned long tenSeconds = 10000;

// Whether another thread gets the lock within timeoutMs; one that gets it lets it go.
bool LockElsewhere(Mutex mutex, unsigned long timeoutMs)
{
    bool locked = false;
    std::thread([&] {
        locked = mutex.Lock(timeoutMs);
        if (locked) {
            mutex.Unlock();
        }
    }).join();
    return locked;
}

std::future<bool> LockElsewhereLater(const Mutex& mutex, unsigned long timeoutMs)
{
    return std::async(std::launch::async, [mutex, timeoutMs] { return LockElsewhere(mutex, timeoutMs); });
}

// Holds the lock on a thread of its own until released.
class HoldingThread {
public:
    explicit HoldingThread(Mutex mutex)
        : worker([this, mutex]() mutable {
              mutex.Lock(Mutex::waitForEver);
              held.set_value();
              release.get_future().wait();
              mutex.Unlock();
          })
    {
        held.get_future().wait();
    }

    ~HoldingThread() { Release(); }

    void Release()
    {
        if (worker.joinable()) {
            release.set_value();
            worker.join();
        }
    }

private:
    std::promise<void> held;
    std::promise<void> release;
    std::thread worker;
};

class MutexTest : public testing::Test {
protected:
    TemporaryLockDirectory lockDirectory;
};

}

TEST_F(MutexTest, UnnamedMutexIsPrivateToItsCopies)
{
    Mutex mutex;
    Mutex other;
    HoldingThread holder(mutex);
    const auto start = Clock::now();
    EXPECT_FALSE(mutex.Lock(0));
    EXPECT_FALSE(LockElsewhere(mutex, 0));
    EXPECT_LT(Clock::now() - start, promptly);
    EXPECT_TRUE(LockElsewhere(other, 0));
    holder.Release();
    EXPECT_TRUE(LockElsewhere(mutex, 0));
}

TEST_F(MutexTest, LockIsRecursiveForItsThreadAndOnlyItsThreadReleasesIt)
{
    Mutex mutex("Recursion");
    EXPECT_TRUE(mutex.Lock(0));
    EXPECT_TRUE(mutex.Lock(tenSeconds));
    EXPECT_TRUE(mutex.Lock(Mutex::waitForEver));

    std::thread([&] { mutex.Unlock(); }).join();
    EXPECT_FALSE(LockElsewhere(mutex, 0));
    mutex.Unlock();
    mutex.Unlock();
    EXPECT_FALSE(LockElsewhere(mutex, 0));
    mutex.Unlock();
    EXPECT_TRUE(LockElsewhere(mutex, 0));
    mutex.Unlock();
    EXPECT_TRUE(LockElsewhere(mutex, 0));
}

TEST_F(MutexTest, MutexesOfOneNameAreOneLockAcrossThreads)
{
    Mutex first("Shared");
    Mutex second("Shared");
    Mutex unrelated("Shared ");
    {
        HoldingThread holder(first);
        EXPECT_FALSE(second.Lock(0));
        EXPECT_FALSE(LockElsewhere(second, 0));
        EXPECT_TRUE(LockElsewhere(unrelated, 0));
    }
    ASSERT_TRUE(second.Lock(0));
    EXPECT_FALSE(LockElsewhere(first, 0));
    second.Unlock();
    EXPECT_TRUE(lockDirectory.Contains("Shared.lock"));
    EXPECT_TRUE(lockDirectory.Contains("Shared%20.lock"));
}

TEST_F(MutexTest, CopyKeepsWorkingAfterItsSourceIsGone)
{
    for (const char* name : {"Copied", ""}) {
        auto source = std::make_unique<Mutex>(name);
        Mutex copy(*source);
        Mutex assigned;
        assigned = *source;
        source.reset();

        ASSERT_TRUE(copy.Lock(0)) << name;
        EXPECT_FALSE(LockElsewhere(assigned, 0)) << name;
        copy.Unlock();
        EXPECT_TRUE(LockElsewhere(assigned, 0)) << name;
    }
}

TEST_F(MutexTest, WaitingThreadGetsTheLockWhenTheHolderLetsGo)
{
    Mutex mutex("Waited for");
    HoldingThread holder(mutex);
    auto waiter = LockElsewhereLater(mutex, tenSeconds);
    EXPECT_EQ(waiter.wait_for(200ms), std::future_status::timeout);
    holder.Release();
    ASSERT_EQ(waiter.wait_for(promptly), std::future_status::ready);
    EXPECT_TRUE(waiter.get());
}

TEST_F(MutexTest, DestroyedMutexLetsGoOnceAndOnlyItsOwnThreadsHold)
{
    Mutex remaining("Dropped");

    auto dropped = std::make_unique<Mutex>("Dropped");
    ASSERT_TRUE(dropped->Lock(0));
    dropped.reset();
    EXPECT_TRUE(LockElsewhere(remaining, 0));

    dropped = std::make_unique<Mutex>("Dropped");
    ASSERT_TRUE(dropped->Lock(0));
    ASSERT_TRUE(dropped->Lock(0));
    dropped.reset();
    EXPECT_FALSE(LockElsewhere(remaining, 0));
    remaining.Unlock();
    EXPECT_TRUE(LockElsewhere(remaining, 0));

    HoldingThread holder(remaining);
    std::make_unique<Mutex>("Dropped").reset();
    EXPECT_FALSE(LockElsewhere(remaining, 0));
}

TEST_F(MutexTest, LockHeldByAnotherProcessKeepsThisOneOutUntilReleased)
{
    HolderProcess holder("Orbel C-SDK lock", 0);
    ASSERT_EQ(holder.ReadLine(), "locked");
    Mutex mutex("Orbel C-SDK lock");
    EXPECT_FALSE(mutex.Lock(0));
    EXPECT_TRUE(LockElsewhere(Mutex("Another lock"), 0));

    auto waiter = LockElsewhereLater(mutex, tenSeconds);
    EXPECT_EQ(waiter.wait_for(300ms), std::future_status::timeout);
    holder.Release();
    EXPECT_EQ(holder.ReadLine(), "released");
    ASSERT_EQ(waiter.wait_for(promptly), std::future_status::ready);
    EXPECT_TRUE(waiter.get());
}

TEST_F(MutexTest, LockHeldByThisProcessKeepsAnotherOut)
{
    Mutex mutex("Orbel C-SDK lock");
    ASSERT_TRUE(mutex.Lock(0));
    EXPECT_EQ(HolderProcess("Orbel C-SDK lock", 0).ReadLine(), "busy");
    EXPECT_EQ(HolderProcess("Orbel C-SDK lock", 200).ReadLine(), "busy");
    mutex.Unlock();

    HolderProcess holder("Orbel C-SDK lock", 0);
    EXPECT_EQ(holder.ReadLine(), "locked");
}

TEST_F(MutexTest, LockOfAKilledProcessIsFreeAtOnce)
{
    for (unsigned long timeoutMs : {tenSeconds, Mutex::waitForEver}) {
        HolderProcess holder("\\\\?\\sim:1000001#{device}", 0);
        ASSERT_EQ(holder.ReadLine(), "locked");
        Mutex mutex("\\\\?\\sim:1000001#{device}");
        EXPECT_FALSE(mutex.Lock(0));

        auto waiter = LockElsewhereLater(mutex, timeoutMs);
        EXPECT_EQ(waiter.wait_for(200ms), std::future_status::timeout);
        holder.Kill();
        ASSERT_EQ(waiter.wait_for(promptly), std::future_status::ready);
        EXPECT_TRUE(waiter.get());
    }
}

TEST_F(MutexTest, LockNamesBecomeDistinctFileNames)
{
    EXPECT_EQ(LockDirectory::FileName("Orbel C-SDK lock"), "Orbel%20C-SDK%20lock");
    EXPECT_EQ(LockDirectory::FileName("\\\\?\\sim:1/a.b"), "%5C%5C%3F%5Csim%3A1%2Fa.b");
    EXPECT_EQ(LockDirectory::FileName(".."), "%2E.");
    EXPECT_EQ(LockDirectory::FileName(""), "");
    EXPECT_NE(LockDirectory::FileName("a b"), LockDirectory::FileName("a_b"));
    EXPECT_NE(LockDirectory::FileName("a%20b"), LockDirectory::FileName("a b"));

    const std::string longName(300, 'x');
    const std::string cut = LockDirectory::FileName(longName);
    EXPECT_EQ(cut.size(), 180U + 1U + 16U);
    EXPECT_EQ(cut.substr(0, 181), std::string(180, 'x') + "~");
    EXPECT_NE(cut, LockDirectory::FileName(longName + "y"));
    EXPECT_EQ(cut, LockDirectory::FileName(longName));

    Mutex named(longName);
    EXPECT_TRUE(named.Lock(0));
    named.Unlock();
    EXPECT_TRUE(lockDirectory.Contains(cut + ".lock"));
}

TEST_F(MutexTest, UnusableLockDirectoryIsRefusedWithItsReason)
{
    const std::string notADirectory = lockDirectory.Path() + "/plain file";
    std::ofstream(notADirectory) << "x";
    ::setenv("ORBEL_LOCK_DIR", notADirectory.c_str(), 1);
    EXPECT_EQ(FailureText<ExceptionMultithreading>([] { Mutex mutex("Refused"); }),
        "Lock directory is no directory: " + notADirectory + " (Not a directory)");

    const std::string missingParent = lockDirectory.Path() + "/missing/locks";
    ::setenv("ORBEL_LOCK_DIR", missingParent.c_str(), 1);
    EXPECT_EQ(FailureText<ExceptionMultithreading>([] { Mutex mutex("Refused"); }),
        "Could not create lock directory " + missingParent + " (No such file or directory)");

    Mutex unnamed;
    EXPECT_TRUE(unnamed.Lock(0));
    unnamed.Unlock();
}
