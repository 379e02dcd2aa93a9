#pragma once

#include <cstdint>

#include "manager/InstrumentButtons_V1.h"
#include "manager/MessageService.h"
#include "utilities/Component.h"
#include "utilities/Mutex.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Thread.h"

namespace HviManager {

// The pushed form of the buttons: a thread polls them twice a second and posts every event to
// the host's "MessageService". Without a service the events are read and dropped.
class InstrumentEvents_V1 : public Utilities::Thread, public Utilities::Component {
public:
    using Callback = GUI::MessageService::Callback;

    // Starts watching at once.
    explicit InstrumentEvents_V1(const Utilities::SmartPointer<InstrumentButtons_V1>& buttons);
    ~InstrumentEvents_V1() override;

    uint32_t Run() override;

    // Drops a key press from before, so that a new subscriber gets no old event.
    virtual void Subscribe(const Utilities::String& name, Callback callback);
    virtual void Unsubscribe(Callback callback);
    virtual void StopWatching();
    virtual void StartWatching();

private:
    static constexpr unsigned long pollPauseMs = 500;
    static constexpr unsigned long stopGraceMs = 1000;

    void PollOnce();

    bool watching;
    Utilities::SmartPointer<GUI::MessageService> messages;
    Utilities::Mutex pace;
    Utilities::SmartPointer<InstrumentButtons_V1> buttons;
};

}
