#include "manager/InstrumentEvents_V1.h"

#include "diagnostics/DebugTraceItem.h"
#include "utilities/ResolveAs.h"

namespace HviManager {

using Utilities::SmartPointer;
using Utilities::String;

InstrumentEvents_V1::InstrumentEvents_V1(const SmartPointer<InstrumentButtons_V1>& buttons)
    : Thread("InstrumentEvents_V1"), watching(false),
      messages(Utilities::ResolveAs<GUI::MessageService>("MessageService")), pace(String()), buttons(buttons)
{
    // Held by this thread for ever, so that the loop's wait on it is a pause.
    if (!pace.Lock(Utilities::Mutex::waitForEver)) {
        Diagnostics::DebugTraceItem trace("HviManager", "InstrumentEvents_V1", "InstrumentEvents_V1", this);
        trace.AddParameter("Could lock Wait mutex.");
        trace.LogCall();
    }
    StartWatching();
}

InstrumentEvents_V1::~InstrumentEvents_V1()
{
    StopWatching();
}

uint32_t InstrumentEvents_V1::Run()
{
    while (!IsStopRequested()) {
        pace.Lock(pollPauseMs);
        if (IsStopRequested()) {
            break;
        }
        PollOnce();
    }
    return 0;
}

void InstrumentEvents_V1::PollOnce()
{
    try {
        InstrumentButtons_V1::ButtonStates states = buttons->GetButtonStates(buttons->GetSelection());
        for (auto entry = states.Begin(); entry.IsValid(); ++entry) {
            messages->Post(entry.Key(), entry.Value());
        }
    } catch (...) {
        // A poll that fails, also for want of a message service, is simply missed: the thread
        // must go on watching.
    }
}

void InstrumentEvents_V1::Subscribe(const String& name, Callback callback)
{
    SmartPointer<InstrumentButtons_V1::ButtonList> wanted(new InstrumentButtons_V1::ButtonList());
    wanted->Append(name);
    if (name != String("Connection")) {
        buttons->GetButtonStates(wanted);
    }
    messages->Subscribe(name, callback);
}

void InstrumentEvents_V1::Unsubscribe(Callback callback)
{
    messages->Unsubscribe(callback);
}

void InstrumentEvents_V1::StopWatching()
{
    if (watching) {
        Stop(stopGraceMs);
        watching = false;
    }
}

void InstrumentEvents_V1::StartWatching()
{
    if (!watching) {
        Start();
        watching = true;
    }
}

}
