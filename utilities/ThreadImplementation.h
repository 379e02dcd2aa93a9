#pragma once

#include "diagnostics/String.h"
#include "utilities/Component.h"

namespace Utilities {

class Thread;

// The platform's thread behind a Thread, found under the name "ThreadImplementation".
class ThreadImplementation : public Component {
public:
    virtual Diagnostics::String GetValueString() const;

    // Waits up to waitMs for the thread to end; the thread is asked to stop beforehand.
    virtual void Stop(unsigned long waitMs) = 0;

    // Runs thread->Run() on a new thread, bracketed by the thread's EnterRun and LeaveRun.
    virtual void Start(Thread* thread) = 0;
};

}
