#include "manager/pavilo/DensityReflectance_V1_Impl.h"

#include "cmetry/Density.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/PaperWhite.h"
#include "driver/SpectrumData.h"
#include "manager/ExceptionHviModule.h"
#include "manager/pavilo/ReflectanceSetup.h"
#include "utilities/LanguageTranslator.h"

namespace HviManager::PaviloDriver {

namespace {

const char* const writeFailure = "Unable to write physical conditions to Pavilo";

}

DensityReflectance_V1_Impl::DensityReflectance_V1_Impl(
    const Utilities::SmartPointer<DeviceDriver::RemissionHandle>& handle)
    : handle(handle)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteConditionsOrThrow(guard);
    if (!handle->Measure("StoredWhite")) {
        throw ExceptionHviModule(Utilities::Translated("Unable to read stored white from Pavilo"));
    }
    ReflectanceSetup::ApplyFilterRule(*handle, conditions);
}

Diagnostics::String DensityReflectance_V1_Impl::GetValueString()
{
    return Diagnostics::String("DensityReflectance_V1");
}

void DensityReflectance_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions)
{
    conditions = newConditions;
}

CMetry::HvMeasureConditions DensityReflectance_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void DensityReflectance_V1_Impl::Calibrate()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteConditionsOrThrow(guard);
    if (!handle->Calibrate()) {
        throw ExceptionHviModule(Utilities::Translated(handle->GetLastError()));
    }
    ReflectanceSetup::ApplyFilterRule(*handle, conditions);
}

void DensityReflectance_V1_Impl::Measure()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteConditionsOrThrow(guard);
    if (!handle->Measure("Single")) {
        throw ExceptionHviModule(Utilities::Translated(handle->GetLastError()));
    }
}

float DensityReflectance_V1_Impl::GetDensity(CMetry::HvSpectrum spectrum)
{
    return CMetry::GetDensity(spectrum, conditions);
}

float DensityReflectance_V1_Impl::GetDensity()
{
    HandleLockGuard guard(AccessibleHandle());
    DeviceDriver::SpectrumData spectrumData;
    if (!guard.Acquire() || !handle->GetResult(spectrumData)) {
        return 0.0f;
    }
    const CMetry::HvSpectrum spectrum(spectrumData.Load(), conditions);
    try {
        return CMetry::GetDensity(spectrum, conditions);
    } catch (const CMetry::ExceptionCMetry& failure) {
        throw ExceptionHviModule(*failure.Text());
    }
}

CMetry::HvSpectrum& DensityReflectance_V1_Impl::MeasureSubstrate()
{
    HandleLockGuard guard(AccessibleHandle());
    DeviceDriver::SpectrumData spectrumData;
    if (!LockAndWriteConditions(guard) || !handle->Measure("Single") || !handle->GetResult(spectrumData)) {
        guard.FailWithLastError();
    }
    substrate = CMetry::HvSpectrum(spectrumData.Load(), CMetry::HvMeasureConditions());
    return substrate;
}

void DensityReflectance_V1_Impl::SetSubstrate(const CMetry::HvSpectrum& spectrum)
{
    substrate = spectrum;
    CMetry::SetPaperWhite(substrate);
}

CMetry::HvSpectrum& DensityReflectance_V1_Impl::GetSubstrate()
{
    return substrate;
}

// Anything thrown on the way counts as a failure to write; the guard keeps the lock it got, so
// that the operation stays whole up to its end.
bool DensityReflectance_V1_Impl::LockAndWriteConditions(HandleLockGuard& guard)
{
    try {
        return guard.Acquire() && ReflectanceSetup::WriteItems(*handle, ReflectanceSetup::Step::Measure);
    } catch (...) {
        return false;
    }
}

void DensityReflectance_V1_Impl::LockAndWriteConditionsOrThrow(HandleLockGuard& guard)
{
    if (!LockAndWriteConditions(guard)) {
        throw ExceptionHviModule(Utilities::Translated(writeFailure));
    }
}

// Without a handle nothing can be written to the instrument.
DeviceDriver::RemissionHandle& DensityReflectance_V1_Impl::AccessibleHandle() const
{
    if (handle.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated(writeFailure));
    }
    return *handle;
}

}
