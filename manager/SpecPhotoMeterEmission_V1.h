#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "utilities/Component.h"

namespace HviManager {

// A single emission (or ambient-light) measurement, answered as a spectrum.
class SpecPhotoMeterEmission_V1 : public Utilities::Component {
public:
    // A dark measurement.
    virtual void Calibrate() = 0;
    // Keeps the handle locked until GetSample fetches the result.
    virtual void Measure() = 0;
    virtual CMetry::HvSpectrum GetSample() = 0;
    virtual CMetry::HvMeasureConditions GetConditions() = 0;
    virtual void SetConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    virtual Diagnostics::String GetValueString() = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
};

}
