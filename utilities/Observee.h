#pragma once

#include <algorithm>
#include <list>
#include <mutex>

#include "utilities/Observer.h"

namespace Utilities {

// Tells its observers of events. Events come on notifier threads while clients add and remove
// observers on theirs, so the list has a guard of its own; an observer is called outside it, so
// that it may add or remove observers from Update. The observers aren't owned.
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

    // Removes the first entry of observer. It may still get the call of a notification that
    // was under way.
    void RemoveObserver(Observer<T>* observer)
    {
        std::lock_guard<std::mutex> held(guard);
        const auto found = std::find(observers.begin(), observers.end(), observer);
        if (found != observers.end()) {
            observers.erase(found);
        }
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

    // Calls the observers in the order they came, as they stood when the call began.
    void NotifyObservers(T value)
    {
        for (Observer<T>* observer : Snapshot()) {
            observer->Update(this, value);
        }
    }

private:
    std::list<Observer<T>*> Snapshot() const
    {
        std::lock_guard<std::mutex> held(guard);
        return observers;
    }

    mutable std::mutex guard;
    std::list<Observer<T>*> observers;
};

}
