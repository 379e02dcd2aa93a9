#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "diagnostics/String.h"
#include "driver/RemissionHandle.h"
#include "manager/DensityReflectance_V1.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The density of a single spot and the paper it is printed on. Made on an open handle it brings
// in the instrument's stored white, and fails when it can't.
class DensityReflectance_V1_Impl : public DensityReflectance_V1 {
public:
    explicit DensityReflectance_V1_Impl(const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle);

    Diagnostics::String GetValueString() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void Calibrate() override;
    void Measure() override;
    float GetDensity(CMetry::HvSpectrum spectrum) override;
    float GetDensity() override;
    // The paper's spectrum carries fresh conditions, and the paper white of the process stays.
    CMetry::HvSpectrum& MeasureSubstrate() override;
    // Makes the spectrum the paper white of the process too.
    void SetSubstrate(const CMetry::HvSpectrum& spectrum) override;
    CMetry::HvSpectrum& GetSubstrate() override;

private:
    // Locks the handle in the guard and gives it the items of a measurement. False on any failure.
    bool LockAndWriteConditions(HandleLockGuard& guard);
    void LockAndWriteConditionsOrThrow(HandleLockGuard& guard);
    DeviceDriver::RemissionHandle& AccessibleHandle() const;

    Utilities::SmartPointer<DeviceDriver::RemissionHandle> handle;
    CMetry::HvMeasureConditions conditions;
    CMetry::HvSpectrum substrate;
};

}
