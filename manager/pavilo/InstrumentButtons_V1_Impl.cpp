#include "manager/pavilo/InstrumentButtons_V1_Impl.h"

#include <mutex>

#include "driver/StateIds.h"
#include "manager/pavilo/HandleLockGuard.h"

namespace HviManager::PaviloDriver {

using Utilities::Anything;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

const char* const measurementKey = "MeasurementKey";
const char* const connection = "Connection";

std::mutex selectionGuard;
SmartPointer<InstrumentButtons_V1::ButtonList> selection;

}

InstrumentButtons_V1_Impl::InstrumentButtons_V1_Impl(
    const SmartPointer<DeviceDriver::RemissionHandle>& handle, unsigned long lockWaitMs)
    : connected(false), handle(handle), lockWaitMs(lockWaitMs)
{
}

SmartPointer<InstrumentButtons_V1::ButtonList> InstrumentButtons_V1_Impl::GetAvailableButtons()
{
    SmartPointer<ButtonList> buttons(new ButtonList());
    buttons->Append(String(measurementKey));
    buttons->Append(String(connection));
    return buttons;
}

SmartPointer<InstrumentButtons_V1::ButtonList> InstrumentButtons_V1_Impl::GetSelection()
{
    std::lock_guard<std::mutex> guard(selectionGuard);
    return selection;
}

void InstrumentButtons_V1_Impl::SetSelection(const SmartPointer<ButtonList>& wanted)
{
    std::lock_guard<std::mutex> guard(selectionGuard);
    selection = wanted;
}

InstrumentButtons_V1::ButtonStates InstrumentButtons_V1_Impl::GetButtonStates(const SmartPointer<ButtonList>& buttons)
{
    ButtonStates states;
    HandleLockGuard lock(*handle);
    if (!lock.Acquire(lockWaitMs)) {
        return states;
    }
    if (Wants(buttons, measurementKey)) {
        AddKeyPress(states);
    }
    if (Wants(buttons, connection)) {
        AddConnectionChange(states);
    }
    return states;
}

bool InstrumentButtons_V1_Impl::Wants(const SmartPointer<ButtonList>& buttons, const char* name)
{
    if (buttons.IsNull()) {
        return true;
    }
    for (auto button = buttons->Begin(); button.IsValid(); ++button) {
        if (button.Current() == String(name)) {
            return true;
        }
    }
    return false;
}

void InstrumentButtons_V1_Impl::AddKeyPress(ButtonStates& states)
{
    // The latch is cleared by this read; on a handle that isn't open the read fails, which is no key.
    long pressed = 0;
    handle->GetState(DeviceDriver::StateIds::interruptLatch, pressed);
    if (pressed != 0) {
        states[String(measurementKey)] = Anything();
    }
}

void InstrumentButtons_V1_Impl::AddConnectionChange(ButtonStates& states)
{
    long attached = 0;
    handle->GetState(DeviceDriver::StateIds::connected, attached);
    if (!connected && attached != 0) {
        connected = true;
        states[String(connection)] = Anything(1L);
    } else if (connected && attached == 0) {
        connected = false;
        states[String(connection)] = Anything(0L);
    }
}

}
