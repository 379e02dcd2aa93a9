#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>
#include <type_traits>

#include "utilities/Exception.h"
#include "utilities/ExceptionMultithreading.h"
#include "utilities/ResolveAs.h"
#include "utilities/Thread.h"
#include "utilities/platform/ThreadImplementation_PC.h"

using Utilities::ResolveAs;
using Utilities::SmartPointer;
using Utilities::Thread;
using Utilities::ThreadImplementation_PC;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

namespace {

// Far below every wait the tests give, far above any scheduling delay.
constexpr auto promptly = 2s;
constexpr unsigned long tenSeconds = 10000;

// Runs until asked to stop, counting its rounds and its runs.
class LoopingThread : public Thread {
public:
    LoopingThread() : Thread("LoopingThread") { }
    ~LoopingThread() override { Stop(tenSeconds); }

    uint32_t Run() override
    {
        ++runs;
        while (!IsStopRequested()) {
            ++rounds;
            std::this_thread::sleep_for(1ms);
        }
        return 7;
    }

    void WaitForRounds(int wanted) const
    {
        while (rounds < wanted) {
            std::this_thread::sleep_for(1ms);
        }
    }

    std::atomic<int> runs{0};
    std::atomic<int> rounds{0};
};

// Gives its exit code at once, or throws it.
template<class Failure>
class OneShotThread : public Thread {
public:
    explicit OneShotThread(uint32_t exitCode) : Thread("OneShotThread"), exitCode(exitCode) { }
    ~OneShotThread() override { Stop(tenSeconds); }

    uint32_t Run() override
    {
        done = true;
        if constexpr (!std::is_void_v<Failure>) {
            throw Failure("Run failed");
        }
        return exitCode;
    }

    const uint32_t exitCode;
    std::atomic<bool> done{false};
};

// Ignores the stop request until the gate opens. Everything it uses lies outside the object,
// as its run is meant to outlive Stop.
class StubbornThread : public Thread {
public:
    StubbornThread(std::shared_future<void> gate, std::atomic<bool>& finished, unsigned long overrunBoundMs = 60000)
        : Thread("StubbornThread", overrunBoundMs), gate(gate), finished(finished)
    {
    }

    uint32_t Run() override
    {
        std::shared_future<void> opened = gate;
        std::atomic<bool>& finishedFlag = finished;
        started.set_value();
        opened.wait();
        finishedFlag = true;
        return 5;
    }

    std::promise<void> started;

private:
    std::shared_future<void> gate;
    std::atomic<bool>& finished;
};

template<class Action>
Clock::duration TimeOf(Action action)
{
    const auto start = Clock::now();
    action();
    return Clock::now() - start;
}

SmartPointer<ThreadImplementation_PC> NewImplementation()
{
    return ResolveAs<ThreadImplementation_PC>("ThreadImplementation");
}

}

TEST(ThreadTest, StopOnAThreadThatIsNotRunningReturnsAtOnce)
{
    LoopingThread never;
    EXPECT_LT(TimeOf([&] { never.Stop(tenSeconds); }), promptly);
    EXPECT_FALSE(never.IsStopRequested());
    EXPECT_EQ(never.runs, 0);
    EXPECT_STREQ(never.GetValueString().CString(), "Thread not started");

    OneShotThread<void> ended(42);
    ended.Start();
    while (!ended.done) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_LT(TimeOf([&] { ended.Stop(tenSeconds); }), promptly);
}

TEST(ThreadTest, StopEndsTheRunLoopAndReturnsAsSoonAsItHasEnded)
{
    LoopingThread thread;
    thread.Start();
    thread.WaitForRounds(3);
    EXPECT_FALSE(thread.IsStopRequested());
    EXPECT_STREQ(thread.GetValueString().CString(), "Thread running");

    EXPECT_LT(TimeOf([&] { thread.Stop(tenSeconds); }), promptly);
    EXPECT_TRUE(thread.IsStopRequested());
    const int rounds = thread.rounds;
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(thread.rounds, rounds);
    EXPECT_STREQ(thread.GetValueString().CString(), "Thread not started");
}

TEST(ThreadTest, StartAfterStopBeginsANewRunAndWhileRunningIsRefused)
{
    LoopingThread thread;
    thread.Start();
    thread.WaitForRounds(1);
    EXPECT_THROW(thread.Start(), Utilities::ExceptionMultithreading);
    EXPECT_FALSE(thread.IsStopRequested());
    EXPECT_TRUE(thread.Stop(tenSeconds));
    thread.Start();
    EXPECT_FALSE(thread.IsStopRequested());
    thread.WaitForRounds(thread.rounds + 1);
    EXPECT_EQ(thread.runs, 2);
}

TEST(ThreadTest, ExitCodeIsRunsResultOrAllOnesWhenRunThrows)
{
    OneShotThread<void> returning(42);
    OneShotThread<Utilities::Exception> throwingOurs(42);
    OneShotThread<std::runtime_error> throwingOther(42);
    for (Thread* thread : std::initializer_list<Thread*>{&returning, &throwingOurs, &throwingOther}) {
        SmartPointer<ThreadImplementation_PC> implementation = NewImplementation();
        ASSERT_FALSE(implementation.IsNull());
        EXPECT_FALSE(implementation->ExitCode().has_value());
        implementation->Start(thread);
        implementation->Stop(tenSeconds);
        ASSERT_TRUE(implementation->ExitCode().has_value());
        if (thread == &returning) {
            EXPECT_EQ(*implementation->ExitCode(), 42U);
            EXPECT_STREQ(implementation->GetValueString().CString(), "Thread ended with exit code 42");
        } else {
            EXPECT_EQ(*implementation->ExitCode(), 4294967295U);
        }
    }

    // Through the Thread the failure ends the thread quietly.
    OneShotThread<Utilities::Exception> thread(0);
    thread.Start();
    thread.Stop(tenSeconds);
    EXPECT_TRUE(thread.done);
}

TEST(ThreadTest, RunThatOverrunsTheWaitIsLeftToFinishAndWaitedForAtTheEnd)
{
    std::promise<void> gate;
    std::atomic<bool> finished{false};
    std::thread opener;
    {
        StubbornThread thread(gate.get_future().share(), finished);
        SmartPointer<ThreadImplementation_PC> implementation = NewImplementation();
        implementation->Start(&thread);
        thread.started.get_future().wait();

        EXPECT_GE(TimeOf([&] { implementation->Stop(50); }), 50ms);
        EXPECT_FALSE(finished);
        EXPECT_EQ(implementation->ExitCode(), 99999U);
        implementation = SmartPointer<ThreadImplementation_PC>();

        opener = std::thread([&] {
            std::this_thread::sleep_for(100ms);
            gate.set_value();
        });
    }
    EXPECT_TRUE(finished);
    opener.join();
}

// Stop gives up and says so; Start refuses until the overrunning run has ended.
TEST(ThreadTest, OverrunThroughTheThreadIsReportedAndBlocksNothing)
{
    std::promise<void> gate;
    std::atomic<bool> finished{false};
    StubbornThread thread(gate.get_future().share(), finished);
    thread.Start();
    thread.started.get_future().wait();
    EXPECT_FALSE(thread.Stop(20));
    EXPECT_TRUE(thread.IsStopRequested());
    EXPECT_FALSE(thread.Stop(20));
    EXPECT_LT(TimeOf([&] { EXPECT_THROW(thread.Start(), Utilities::ExceptionMultithreading); }), promptly);
    EXPECT_FALSE(finished);

    gate.set_value();
    EXPECT_TRUE(thread.Stop(tenSeconds));
    EXPECT_TRUE(finished);
    thread.started = std::promise<void>();
    thread.Start();
    thread.started.get_future().wait();
    EXPECT_TRUE(thread.Stop(tenSeconds));
}

// A run that outlives its Thread's bound would use a destroyed object: the process ends, naming it.
TEST(ThreadDeathTest, DestroyingARunThatIgnoresTheStopAbortsNamingTheThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            std::promise<void> never;
            std::atomic<bool> finished{false};
            StubbornThread thread(never.get_future().share(), finished, 100);
            thread.Start();
            thread.started.get_future().wait();
        },
        "Thread \"StubbornThread\" ignored the request to stop for 100 ms");
}

TEST(ThreadTest, DestroyingARunningThreadStopsIt)
{
    std::atomic<bool> ended{false};
    class Plain : public Thread {
    public:
        explicit Plain(std::atomic<bool>& ended) : Thread("Plain"), ended(ended) { }
        uint32_t Run() override
        {
            std::atomic<bool>& endedFlag = ended;
            started.set_value();
            while (!IsStopRequested()) {
                std::this_thread::sleep_for(1ms);
            }
            endedFlag = true;
            return 0;
        }
        std::promise<void> started;

    private:
        std::atomic<bool>& ended;
    };
    auto thread = std::make_unique<Plain>(ended);
    thread->Start();
    thread->started.get_future().wait();
    EXPECT_LT(TimeOf([&] { thread.reset(); }), promptly);
    EXPECT_TRUE(ended);
}
