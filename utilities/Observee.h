#pragma once

#include <algorithm>
#include <condition_variable>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

#include "utilities/Observer.h"

namespace Utilities {

// Tells its observers of events. Events come on notifier threads while clients add and remove
// observers on theirs, so the list has a guard of its own; an observer is called outside it, so
// that it may add or remove observers from Update. The observers aren't owned: once
// RemoveObserver has returned, no notification calls that observer any more, so it may go.
template<class T>
class Observee {
public:
    Observee() = default;
    Observee(const Observee&) = delete;
    Observee& operator=(const Observee&) = delete;
    virtual ~Observee() = default;

    void AddObserver(Observer<T>* observer)
    {
        std::lock_guard<std::mutex> held(guard);
        observers.push_back(observer);
    }

    // Removes the first entry of observer and waits until calls of it under way on other threads
    // have returned. From inside its own Update an observer may remove itself without waiting.
    void RemoveObserver(Observer<T>* observer)
    {
        std::unique_lock<std::mutex> held(guard);
        const auto found = std::find(observers.begin(), observers.end(), observer);
        if (found != observers.end()) {
            observers.erase(found);
        }
        callEnded.wait(held, [this, observer] { return !IsCalledElsewhere(observer); });
    }

    bool HasObserver(Observer<T>* observer) const
    {
        std::lock_guard<std::mutex> held(guard);
        return std::find(observers.begin(), observers.end(), observer) != observers.end();
    }

    bool HasObservers() const
    {
        std::lock_guard<std::mutex> held(guard);
        return !observers.empty();
    }

    // Calls the observers in the order they came, as they stood when the call began, leaving out
    // those removed in the meantime.
    void NotifyObservers(T value)
    {
        for (Observer<T>* observer : Snapshot()) {
            if (BeginCall(observer)) {
                const CallUnderWay call(*this, observer);
                observer->Update(this, value);
            }
        }
    }

private:
    using Call = std::pair<Observer<T>*, std::thread::id>;

    class CallUnderWay {
    public:
        CallUnderWay(Observee& observee, Observer<T>* observer) : observee(observee), observer(observer) { }
        CallUnderWay(const CallUnderWay&) = delete;
        CallUnderWay& operator=(const CallUnderWay&) = delete;
        ~CallUnderWay() { observee.EndCall(observer); }

    private:
        Observee& observee;
        Observer<T>* observer;
    };

    bool BeginCall(Observer<T>* observer)
    {
        std::lock_guard<std::mutex> held(guard);
        if (std::find(observers.begin(), observers.end(), observer) == observers.end()) {
            return false;
        }
        calls.emplace_back(observer, std::this_thread::get_id());
        return true;
    }

    void EndCall(Observer<T>* observer)
    {
        {
            std::lock_guard<std::mutex> held(guard);
            calls.erase(std::find(calls.begin(), calls.end(), Call(observer, std::this_thread::get_id())));
        }
        callEnded.notify_all();
    }

    bool IsCalledElsewhere(Observer<T>* observer) const
    {
        const std::thread::id self = std::this_thread::get_id();
        return std::any_of(calls.begin(), calls.end(),
            [observer, self](const Call& call) { return call.first == observer && call.second != self; });
    }

    std::list<Observer<T>*> Snapshot() const
    {
        std::lock_guard<std::mutex> held(guard);
        return observers;
    }

    mutable std::mutex guard;
    std::condition_variable callEnded;
    std::list<Observer<T>*> observers;
    std::list<Call> calls;
};

}
