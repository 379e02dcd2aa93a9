#pragma once

#include <cstdint>

#include "driver/MeasurementHandle.h"
#include "driver/TimeStamp.h"

namespace DeviceDriver {

// Reflectance: dark, white on the tile (measured, or the one stored in the log at the last
// calibration) and samples. Measurements are kept a second apart, so that the lamp has cooled.
class RemissionHandle : public MeasurementHandle {
public:
    RemissionHandle();
    ~RemissionHandle() override;

    // "Dark", "White", "StoredWhite" or "Single".
    bool Measure(const Utilities::String& type) override;
    bool Calibrate() override;
    Utilities::String GetMode() override;

protected:
    // Sleeps 800 ms when the last measurement is less than a second ago.
    void KeepSpacing();
    void NoteMeasurementTime();

private:
    void MeasureType(const Utilities::String& type);
    void MeasureSingle();
    void UseStoredWhite();
    void CalibrationSteps();
    // A white whose level is wrong, or that failed, leads to a new integration time and a
    // second white when adapt is set.
    void AdaptAndMeasureWhiteAgain(Utilities::Vector<long>& darkRow, SensorData& sensor, uint16_t& filter);
    void StoreWhite(const Utilities::Vector<long>& darkRow, const SensorData& sensor);
    void BookCalibration(uint16_t filter);

    TimeStamp lastMeasurement;
};

}
