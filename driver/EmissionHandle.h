#pragma once

#include <cstdint>

#include "driver/MeasurementHandle.h"

namespace DeviceDriver {

// Displays and lights: a dark, then samples without the lamp. A sample that saturates with adapt
// set brings a new integration time, and with it the request for a new dark.
class EmissionHandle : public MeasurementHandle {
public:
    EmissionHandle();
    ~EmissionHandle() override;

    // "Dark" or "Single".
    bool Measure(const Utilities::String& type) override;
    // An emission measurement has no calibration of its own: its dark is a measurement.
    bool Calibrate() override;
    Utilities::String GetMode() override;

protected:
    // The measurement types of the class; false for a type it doesn't know.
    virtual bool MeasureType(const Utilities::String& type);
    // A single sample, calculated in the given mode.
    void MeasureAdaptedSingle(const Utilities::String& mode);
};

}
