#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "utilities/Component.h"

namespace HviManager {

// An emission or ambient-light measurement, answered as a colour vector.
class TristPhotoMeterEmission_V1 : public Utilities::Component {
public:
    // A dark measurement under the present tuning conditions.
    virtual void Calibrate() = 0;
    // Keeps the instrument locked until GetColorVector fetches the result.
    virtual void Measure() = 0;
    virtual CMetry::HvColorVector GetColorVector() = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
};

}
