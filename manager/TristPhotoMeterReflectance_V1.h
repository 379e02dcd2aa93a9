#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "utilities/Component.h"

namespace HviManager {

// A single reflectance measurement, answered as a colour vector under the measure conditions.
class TristPhotoMeterReflectance_V1 : public Utilities::Component {
public:
    virtual void Calibrate() = 0;
    // Keeps the instrument locked until GetColorVector fetches the result.
    virtual void Measure() = 0;
    virtual CMetry::HvColorVector GetColorVector() = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
};

}
