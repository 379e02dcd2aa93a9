#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "driver/EmissionHandle.h"
#include "manager/TristPhotoMeterEmission_V1.h"
#include "manager/pavilo/SpecPhotoMeterEmission_V1_Impl.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The colour vector of an emission or ambient-light measurement, computed from the spectrum of
// a spectral interface of its own on the same handle.
class TristPhotoMeterEmission_V1_Impl : public TristPhotoMeterEmission_V1 {
public:
    explicit TristPhotoMeterEmission_V1_Impl(const Utilities::SmartPointer<DeviceDriver::EmissionHandle>& handle);

    void Calibrate() override;
    // Leaves the handle locked for GetColorVector, which ends the lock.
    void Measure() override;
    CMetry::HvColorVector GetColorVector() override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) override;

private:
    SpecPhotoMeterEmission_V1_Impl spectral;
};

}
