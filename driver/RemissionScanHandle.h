#pragma once

#include "driver/RemissionHandle.h"

namespace DeviceDriver {

// A strip drawn by hand over a row of patches: the stream of sensor packets becomes a stream of
// spectra in the sample FIFO, in the order of the strip. Its white keeps one row for each
// repeated measurement, and the n-th spectrum of a strip uses row n.
class RemissionScanHandle : public RemissionHandle {
public:
    RemissionScanHandle();
    ~RemissionScanHandle() override;

    // "Dark", "White" or "Scan".
    bool Measure(const Utilities::String& type) override;
    bool Calibrate() override;
    Utilities::String GetMode() override;

    // Turns the measurements of a read strip into spectra; public for the benchmark of it.
    void CalculateStrip(SensorDataFifo& strip);

private:
    void MeasureType(const Utilities::String& type);
    void Scan();
    void CalibrationSteps();
    void AdaptToHalfLevel();
};

}
