#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/TristPhotoMeterReflectance_V1.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The colour vector of a single spot, computed from the spectrum of the reflectance interface it
// is built on; everything else passes straight to that interface.
class TristPhotoMeterReflectance_V1_Impl : public TristPhotoMeterReflectance_V1 {
public:
    explicit TristPhotoMeterReflectance_V1_Impl(Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> inner);

    void Calibrate() override;
    // Leaves the handle locked for GetColorVector, which ends the lock.
    void Measure() override;
    CMetry::HvColorVector GetColorVector() override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) override;

private:
    Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> inner;
};

}
