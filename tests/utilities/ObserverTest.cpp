#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "utilities/Observee.h"
#include "utilities/Observer.h"

using Utilities::Observee;
using Utilities::Observer;

namespace {

// Writes down the calls it gets; may remove an observer (itself too) and add one on its first call.
class RecordingObserver : public Observer<long> {
public:
    explicit RecordingObserver(std::vector<std::pair<int, long>>& calls, int id) : calls(calls), id(id) { }

    void Update(Observee<long>* source, long value) override
    {
        calls.emplace_back(id, value);
        lastSource = source;
        if (removeOnUpdate != nullptr) {
            source->RemoveObserver(std::exchange(removeOnUpdate, nullptr));
        }
        if (addOnUpdate != nullptr) {
            source->AddObserver(std::exchange(addOnUpdate, nullptr));
        }
    }

    Observee<long>* lastSource = nullptr;
    Observer<long>* removeOnUpdate = nullptr;
    Observer<long>* addOnUpdate = nullptr;

private:
    std::vector<std::pair<int, long>>& calls;
    int id;
};

class CountingObserver : public Observer<long> {
public:
    void Update(Observee<long>*, long value) override { sum += value; }

    std::atomic<long> sum{0};
};

using Calls = std::vector<std::pair<int, long>>;

}

TEST(ObserverTest, ObserversAreToldInTheOrderTheyCameAndRemovedOneEntryAtATime)
{
    Calls calls;
    RecordingObserver first(calls, 1);
    RecordingObserver second(calls, 2);
    Observee<long> source;
    source.NotifyObservers(5);
    EXPECT_TRUE(calls.empty());

    source.AddObserver(&second);
    source.AddObserver(&first);
    source.NotifyObservers(0);
    source.NotifyObservers(1);
    EXPECT_EQ(calls, (Calls{{2, 0}, {1, 0}, {2, 1}, {1, 1}}));
    EXPECT_EQ(first.lastSource, &source);

    // Of an observer added twice, removing takes out the first entry only.
    source.AddObserver(&second);
    source.RemoveObserver(&second);
    calls.clear();
    source.NotifyObservers(7);
    EXPECT_EQ(calls, (Calls{{1, 7}, {2, 7}}));
    EXPECT_TRUE(source.HasObserver(&second));
    EXPECT_TRUE(source.HasObservers());

    source.RemoveObserver(&second);
    source.RemoveObserver(&first);
    source.RemoveObserver(&first);
    EXPECT_FALSE(source.HasObserver(&first));
    EXPECT_FALSE(source.HasObservers());
}

TEST(ObserverTest, ObserverThatDetachesItselfDoesNotDisturbTheOthers)
{
    Calls calls;
    RecordingObserver first(calls, 1);
    RecordingObserver leaving(calls, 2);
    RecordingObserver last(calls, 3);
    Observee<long> source;
    source.AddObserver(&first);
    source.AddObserver(&leaving);
    source.AddObserver(&last);
    leaving.removeOnUpdate = &leaving;

    source.NotifyObservers(1);
    source.NotifyObservers(2);
    EXPECT_EQ(calls, (Calls{{1, 1}, {2, 1}, {3, 1}, {1, 2}, {3, 2}}));
}

TEST(ObserverTest, RemovedObserversAreLeftOutAtOnceAddedOnesFromTheNextNotification)
{
    Calls calls;
    RecordingObserver first(calls, 1);
    RecordingObserver second(calls, 2);
    RecordingObserver newcomer(calls, 3);
    Observee<long> source;
    source.AddObserver(&first);
    source.AddObserver(&second);
    first.addOnUpdate = &newcomer;
    first.removeOnUpdate = &second;

    source.NotifyObservers(1);
    EXPECT_EQ(calls, (Calls{{1, 1}}));
    source.NotifyObservers(2);
    EXPECT_EQ(calls, (Calls{{1, 1}, {1, 2}, {3, 2}}));
}

TEST(ObserverTest, RemovingWaitsForACallUnderWayOnAnotherThread)
{
    class SlowObserver : public Observer<long> {
    public:
        void Update(Observee<long>*, long) override
        {
            entered = true;
            while (!released) {
                std::this_thread::yield();
            }
        }
        std::atomic<bool> entered{false};
        std::atomic<bool> released{false};
    };
    SlowObserver slow;
    Observee<long> source;
    source.AddObserver(&slow);
    std::thread notifier([&] { source.NotifyObservers(1); });
    while (!slow.entered) {
        std::this_thread::yield();
    }
    std::atomic<bool> removed{false};
    std::thread remover([&] {
        source.RemoveObserver(&slow);
        removed = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(removed);
    slow.released = true;
    remover.join();
    notifier.join();
    EXPECT_TRUE(removed);
}

TEST(ObserverTest, NotifiersAndClientsMayWorkOnOneObserveeAtOnce)
{
    Observee<long> source;
    CountingObserver resident;
    source.AddObserver(&resident);
    std::vector<CountingObserver> visitors(4);
    constexpr int rounds = 2000;

    std::vector<std::thread> threads;
    for (int notifier = 0; notifier < 2; ++notifier) {
        threads.emplace_back([&] {
            for (int i = 0; i < rounds; ++i) {
                source.NotifyObservers(1);
            }
        });
    }
    for (CountingObserver& visitor : visitors) {
        threads.emplace_back([&] {
            for (int i = 0; i < rounds; ++i) {
                source.AddObserver(&visitor);
                source.RemoveObserver(&visitor);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(resident.sum, 2 * rounds);
    EXPECT_TRUE(source.HasObserver(&resident));
    for (CountingObserver& visitor : visitors) {
        EXPECT_FALSE(source.HasObserver(&visitor));
    }
}
