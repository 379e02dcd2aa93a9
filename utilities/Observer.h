#pragma once

namespace Utilities {

template<class T>
class Observee;

// Told by an Observee of each event; called on the thread that notifies.
template<class T>
class Observer {
public:
    virtual void Update(Observee<T>* source, T value) = 0;
    virtual ~Observer() = default;
};

}
