#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "utilities/Component.h"

namespace HviManager {

// A single reflectance measurement, answered as a density under the measure conditions.
class DensityReflectance_V1 : public Utilities::Component {
public:
    virtual Diagnostics::String GetValueString() = 0;
    virtual void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) = 0;
    virtual CMetry::HvMeasureConditions GetMeasureConditions() = 0;
    virtual void Calibrate() = 0;
    virtual void Measure() = 0;
    // The density of a given spectrum under the measure conditions.
    virtual float GetDensity(CMetry::HvSpectrum spectrum) = 0;
    // The density of the last measurement; 0 when there is none.
    virtual float GetDensity() = 0;
    // Measures the paper and keeps it as the substrate.
    virtual CMetry::HvSpectrum& MeasureSubstrate() = 0;
    virtual void SetSubstrate(const CMetry::HvSpectrum& spectrum) = 0;
    virtual CMetry::HvSpectrum& GetSubstrate() = 0;
};

}
