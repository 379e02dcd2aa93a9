#pragma once

#include <cstdint>

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "diagnostics/String.h"
#include "utilities/Component.h"

namespace HviManager {

// A scan of a strip, answered as spectra per patch or per raw position.
class SpecPhotoMeterScanning_V1 : public Utilities::Component {
public:
    // -1 leaves the instrument's own count.
    virtual void Measure(int32_t count) = 0;
    // One spectrum per recognised patch.
    virtual CMetry::HvSample GetRecognizedSamples() = 0;
    // One spectrum per raw scan position.
    virtual CMetry::HvSample GetSamples() = 0;
    virtual void Calibrate() = 0;
    virtual CMetry::HvMeasureConditions GetConditions() = 0;
    virtual void SetConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    virtual Diagnostics::String GetValueString() = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
};

}
