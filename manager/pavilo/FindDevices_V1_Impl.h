#pragma once

#include "manager/FindDevices_V1.h"
#include "manager/InstrumentInfo_V1.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The one kind of instrument that this driver knows, named without touching the hardware.
class FindDevices_V1_Impl : public FindDevices_V1 {
public:
    FindDevices_V1_Impl();
    // With an info object, IsAvailable gives the live connection state.
    explicit FindDevices_V1_Impl(const Utilities::SmartPointer<InstrumentInfo_V1>& info);

    Diagnostics::String GetValueString() override;
    Utilities::List<DeviceDescription> FindDevices() override;
    // False without an info object.
    bool IsAvailable(const DeviceDescription& device) override;

private:
    Utilities::SmartPointer<InstrumentInfo_V1> info;
};

}
