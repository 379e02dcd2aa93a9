#include "manager/pavilo/SpecPhotoMeterReflectance_V1_Impl.h"

#include "manager/ExceptionHviModule.h"
#include "utilities/LanguageTranslator.h"

namespace HviManager::PaviloDriver {

namespace {

const char* const lockFailure = "Unable to Lock RemissionHandle of Pavilo";

}

SpecPhotoMeterReflectance_V1_Impl::SpecPhotoMeterReflectance_V1_Impl(
    const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle)
    : handle(handle)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
    try {
        LoadStoredWhite();
    } catch (...) {
        // Without the stored white the object still comes into being: the first Measure then
        // fails with "White data not valid", and the client learns that it must calibrate.
    }
}

void SpecPhotoMeterReflectance_V1_Impl::LoadStoredWhite()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteItems(guard, ReflectanceSetup::Step::Measure, true);
    if (!handle->Measure("StoredWhite")) {
        guard.FailWithLastError();
    }
    ReflectanceSetup::ApplyFilterRule(*handle, conditions);
}

void SpecPhotoMeterReflectance_V1_Impl::Measure()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteItems(guard, ReflectanceSetup::Step::Measure, true);
    if (!handle->Measure("Single")) {
        guard.FailWithLastError();
    }
    guard.KeepHeld();
}

CMetry::HvSpectrum SpecPhotoMeterReflectance_V1_Impl::GetSample()
{
    HandleLockGuard guard(AccessibleHandle());
    return CMetry::HvSpectrum(guard.FetchResult().Load(), conditions);
}

void SpecPhotoMeterReflectance_V1_Impl::Calibrate()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteItems(guard, ReflectanceSetup::Step::Calibrate, false);
    if (!handle->Calibrate()) {
        guard.FailWithLastError();
    }
    ReflectanceSetup::ApplyFilterRule(*handle, conditions);
}

Diagnostics::String SpecPhotoMeterReflectance_V1_Impl::GetValueString()
{
    return Diagnostics::String();
}

CMetry::HvMeasureConditions SpecPhotoMeterReflectance_V1_Impl::GetConditions()
{
    return GetMeasureConditions();
}

void SpecPhotoMeterReflectance_V1_Impl::SetConditions(const CMetry::HvMeasureConditions& newConditions)
{
    SetMeasureConditions(newConditions);
}

CMetry::HvMeasureConditions SpecPhotoMeterReflectance_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void SpecPhotoMeterReflectance_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions)
{
    conditions = newConditions;
}

DeviceDriver::RemissionHandle& SpecPhotoMeterReflectance_V1_Impl::AccessibleHandle() const
{
    if (handle.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to access Pavilo"));
    }
    return *handle;
}

// A calibration reports a missed lock in English whatever the language; the other steps translate it.
void SpecPhotoMeterReflectance_V1_Impl::LockAndWriteItems(
    HandleLockGuard& guard, ReflectanceSetup::Step step, bool translateLockFailure)
{
    if (!guard.Acquire()) {
        throw ExceptionHviModule(
            translateLockFailure ? Utilities::Translated(lockFailure) : Utilities::String(lockFailure));
    }
    if (!ReflectanceSetup::WriteItems(*handle, step)) {
        guard.FailWithLastError();
    }
}

}
