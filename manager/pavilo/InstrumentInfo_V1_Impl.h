#pragma once

#include <cstdint>

#include "driver/MeasurementHandle.h"
#include "driver/RemissionHandle.h"
#include "manager/InstrumentInfo_V1.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace HviManager::PaviloDriver {

// Answers the questions on the instrument from the state values of the driver, also while the
// instrument is absent.
class InstrumentInfo_V1_Impl : public InstrumentInfo_V1 {
public:
    explicit InstrumentInfo_V1_Impl(const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle);

    // "Failed" when the handle lock wasn't had.
    Utilities::String GetInformation(const Utilities::String& key) override;

private:
    Utilities::String ConnectionText();
    Utilities::String StateValueText(uint16_t id);
    // The state value read under the handle lock; false when the lock wasn't had.
    bool ReadStateLocked(uint16_t id, long& value);

    Utilities::SmartPointer<DeviceDriver::MeasurementHandle> handle;
};

}
