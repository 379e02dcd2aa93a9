#pragma once

#include "diagnostics/String.h"
#include "utilities/Component.h"
#include "utilities/List.h"
#include "utilities/Map.h"
#include "utilities/String.h"

namespace HviManager {

// What can be attached, answered without touching the hardware.
class FindDevices_V1 : public Utilities::Component {
public:
    using DeviceDescription = Utilities::Map<Utilities::String, Utilities::String>;

    virtual Diagnostics::String GetValueString() = 0;
    virtual Utilities::List<DeviceDescription> FindDevices() = 0;
    // Whether the device that the description names can be reached now.
    virtual bool IsAvailable(const DeviceDescription& device) = 0;
};

}
