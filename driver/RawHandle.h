#pragma once

#include "driver/MeasurementHandle.h"

namespace DeviceDriver {

// The pixels as the sensor gives them, averaged over the readings and not calculated further.
class RawHandle : public MeasurementHandle {
public:
    RawHandle();
    ~RawHandle() override;

    // "Single" only.
    bool Measure(const Utilities::String& type) override;
    bool Calibrate() override;
    Utilities::String GetMode() override;

private:
    void MeasureRaw();
};

}
