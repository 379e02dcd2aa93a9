#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "utilities/Vector.h"

// One shape for every kind of measurement: calibrate, trigger, hold the samples of the last
// measurement and the options under which they are read. Orbel keeps one per mode and knows
// nothing else of the instrument's interfaces.
class MeasurementDeviceInterface {
public:
    virtual ~MeasurementDeviceInterface();

    // The samples are emptied first, so that a failed calibration doesn't leave results behind
    // that were taken before it.
    virtual void Calibrate() = 0;
    // The samples are replaced only when measuring and fetching both succeed.
    virtual void TriggerMeasurement() = 0;
    virtual const Utilities::Vector<CMetry::HvSpectrum>& GetSamples() const = 0;
    virtual bool HasSamples() const = 0;
    // Sets one condition and hands all conditions to the instrument.
    virtual void SetOption(const char* key, const char* value) = 0;
    virtual void SetConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    virtual const CMetry::HvMeasureConditions& GetConditions() const = 0;
    // Back to a new device: no samples, default conditions, and these handed down.
    virtual void Reset() = 0;
};
