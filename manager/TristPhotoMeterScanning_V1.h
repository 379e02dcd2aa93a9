#pragma once

#include <cstdint>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "diagnostics/String.h"
#include "utilities/Component.h"
#include "utilities/List.h"

namespace HviManager {

// A scan of a strip, answered as colour vectors under the measure conditions.
class TristPhotoMeterScanning_V1 : public Utilities::Component {
public:
    virtual Diagnostics::String GetValueString() = 0;
    virtual void Calibrate() = 0;
    // One vector per recognised patch.
    virtual Utilities::List<CMetry::HvColorVector> GetRecognizedColorVectors() = 0;
    // One vector per raw scan position.
    virtual Utilities::List<CMetry::HvColorVector> GetColorVectors() = 0;
    virtual CMetry::HvMeasureConditions GetConditions() = 0;
    virtual void SetConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    // -1 leaves the instrument's own count.
    virtual void Measure(int32_t count) = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
};

}
