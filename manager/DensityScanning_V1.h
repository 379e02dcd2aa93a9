#pragma once

#include <cstdint>

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "utilities/Component.h"
#include "utilities/List.h"

namespace HviManager {

// A scan of a strip, answered as densities under the measure conditions and the substrate.
class DensityScanning_V1 : public Utilities::Component {
public:
    virtual Diagnostics::String GetValueString() = 0;
    virtual void Calibrate() = 0;
    // One density per raw scan position.
    virtual Utilities::List<float> GetDensities() = 0;
    // One density per recognised patch.
    virtual Utilities::List<float> GetRecognizedDensities() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    virtual CMetry::HvMeasureConditions& GetMeasureConditions() = 0;
    // -1 leaves the instrument's own count.
    virtual void Measure(int32_t count) = 0;
    virtual void SetSubstrate(const CMetry::HvSpectrum& spectrum) = 0;
    virtual CMetry::HvSpectrum& GetSubstrate() = 0;
    virtual CMetry::HvSpectrum& MeasureSubstrate() = 0;
};

}
