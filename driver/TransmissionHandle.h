#pragma once

#include <cstdint>

#include "driver/MeasurementHandle.h"

namespace DeviceDriver {

// Light through a sample: a dark, a reference without the sample, then samples against it.
class TransmissionHandle : public MeasurementHandle {
public:
    TransmissionHandle();
    ~TransmissionHandle() override;

    // "Dark", "Reference" or "Single".
    bool Measure(const Utilities::String& type) override;
    // The reference. A reference at the wrong level with adapt set brings a new integration time
    // for the next one; the reference stays that of the first measurement.
    bool Calibrate() override;
    Utilities::String GetMode() override;

private:
    void MeasureType(const Utilities::String& type);
    void MeasureSingle();
    void ReferenceSteps();
};

}
