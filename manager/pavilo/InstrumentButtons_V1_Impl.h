#pragma once

#include "driver/RemissionHandle.h"
#include "manager/InstrumentButtons_V1.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The measurement key and the connection as events since the last question. The key press is a
// latch in the driver, so two objects compete for it: whichever asks first sees it.
class InstrumentButtons_V1_Impl : public InstrumentButtons_V1 {
public:
    // The event thread's polls wait for the handle lock only briefly, so that stopping the thread
    // never has to wait for a long measurement of a client.
    explicit InstrumentButtons_V1_Impl(const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle,
        unsigned long lockWaitMs = DeviceDriver::MeasurementHandle::lockTimeoutMs);

    Utilities::SmartPointer<ButtonList> GetAvailableButtons() override;
    // The selection is one for the whole process.
    Utilities::SmartPointer<ButtonList> GetSelection() override;
    void SetSelection(const Utilities::SmartPointer<ButtonList>& selection) override;
    // Empty when the handle lock wasn't had.
    ButtonStates GetButtonStates(const Utilities::SmartPointer<ButtonList>& buttons) override;

private:
    static bool Wants(const Utilities::SmartPointer<ButtonList>& buttons, const char* name);

    void AddKeyPress(ButtonStates& states);
    void AddConnectionChange(ButtonStates& states);

    bool connected;
    Utilities::SmartPointer<DeviceDriver::RemissionHandle> handle;
    unsigned long lockWaitMs;
};

}
