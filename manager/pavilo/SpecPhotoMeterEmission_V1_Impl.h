#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "driver/EmissionHandle.h"
#include "manager/SpecPhotoMeterEmission_V1.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The spectrum of the light that reaches the instrument with its lamp off: emission on an
// EmissionHandle, ambient light on an AmbientLightHandle. A client tunes the measurement through
// the custom conditions "Orbel_NumberOfSamples", "Orbel_Gain" and "Orbel_IntegrationTime", read
// afresh at each Calibrate and Measure.
class SpecPhotoMeterEmission_V1_Impl : public SpecPhotoMeterEmission_V1 {
public:
    explicit SpecPhotoMeterEmission_V1_Impl(const Utilities::SmartPointer<DeviceDriver::EmissionHandle>& handle);

    void Calibrate() override;
    // Leaves the handle locked for GetSample, which ends the lock.
    void Measure() override;
    CMetry::HvSpectrum GetSample() override;
    CMetry::HvMeasureConditions GetConditions() override;
    void SetConditions(const CMetry::HvMeasureConditions& newConditions) override;
    Diagnostics::String GetValueString() override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    // The illumination stays "Emission", whatever the new conditions say.
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;

private:
    DeviceDriver::EmissionHandle& AccessibleHandle() const;
    // Locks the handle in the guard and gives it the items of the tuning conditions.
    void LockAndPrepare(HandleLockGuard& guard);
    void WriteTuningItems(DeviceDriver::ConfigurationData& items) const;

    CMetry::HvMeasureConditions conditions;
    Utilities::SmartPointer<DeviceDriver::EmissionHandle> handle;
};

}
