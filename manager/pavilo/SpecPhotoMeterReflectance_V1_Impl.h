#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "driver/RemissionHandle.h"
#include "manager/SpecPhotoMeterReflectance_V1.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "manager/pavilo/ReflectanceSetup.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The spectrum of a single spot. Made on an open handle it brings in the white that the
// instrument stored at its last calibration, so that a client can measure at once.
class SpecPhotoMeterReflectance_V1_Impl : public SpecPhotoMeterReflectance_V1 {
public:
    explicit SpecPhotoMeterReflectance_V1_Impl(const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle);

    // Leaves the handle locked for GetSample, which ends the lock.
    void Measure() override;
    CMetry::HvSpectrum GetSample() override;
    void Calibrate() override;
    Diagnostics::String GetValueString() override;
    CMetry::HvMeasureConditions GetConditions() override;
    void SetConditions(const CMetry::HvMeasureConditions& newConditions) override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;

private:
    void LoadStoredWhite();
    DeviceDriver::RemissionHandle& AccessibleHandle() const;
    void LockAndWriteItems(HandleLockGuard& guard, ReflectanceSetup::Step step, bool translateLockFailure);

    CMetry::HvMeasureConditions conditions;
    Utilities::SmartPointer<DeviceDriver::RemissionHandle> handle;
};

}
