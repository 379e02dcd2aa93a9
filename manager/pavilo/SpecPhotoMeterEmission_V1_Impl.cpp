#include "manager/pavilo/SpecPhotoMeterEmission_V1_Impl.h"

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "manager/ExceptionHviModule.h"
#include "manager/pavilo/PhysicalConditionItems.h"
#include "utilities/LanguageTranslator.h"

namespace HviManager::PaviloDriver {

namespace {

using Items = PhysicalConditionItems;

constexpr uint32_t highGain = 0;
constexpr uint32_t lowGain = 1;
constexpr long defaultCount = 2;
constexpr double defaultIntegrationTime = 0.5;

const Utilities::String undefined("Undefined");

}

SpecPhotoMeterEmission_V1_Impl::SpecPhotoMeterEmission_V1_Impl(
    const Utilities::SmartPointer<DeviceDriver::EmissionHandle>& handle)
    : handle(handle)
{
    conditions.SetCondition("Colorimetric.Illumination", "Emission");
}

void SpecPhotoMeterEmission_V1_Impl::Calibrate()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndPrepare(guard);
    if (!handle->Measure("Dark")) {
        guard.FailWithLastError();
    }
}

void SpecPhotoMeterEmission_V1_Impl::Measure()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndPrepare(guard);
    const char* const type = handle->GetMode() == "Emission" ? "Single" : "Single Continuous";
    if (!handle->Measure(type)) {
        guard.FailWithLastError();
    }
    guard.KeepHeld();
}

CMetry::HvSpectrum SpecPhotoMeterEmission_V1_Impl::GetSample()
{
    HandleLockGuard guard(AccessibleHandle());
    return CMetry::HvSpectrum(guard.FetchResult().Load(), conditions);
}

CMetry::HvMeasureConditions SpecPhotoMeterEmission_V1_Impl::GetConditions()
{
    return GetMeasureConditions();
}

void SpecPhotoMeterEmission_V1_Impl::SetConditions(const CMetry::HvMeasureConditions& newConditions)
{
    SetMeasureConditions(newConditions);
}

Diagnostics::String SpecPhotoMeterEmission_V1_Impl::GetValueString()
{
    return Diagnostics::String();
}

CMetry::HvMeasureConditions SpecPhotoMeterEmission_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void SpecPhotoMeterEmission_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions)
{
    conditions = newConditions;
    conditions.SetCondition("Colorimetric.Illumination", "Emission");
}

DeviceDriver::EmissionHandle& SpecPhotoMeterEmission_V1_Impl::AccessibleHandle() const
{
    if (handle.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to access Pavilo"));
    }
    return *handle;
}

// A tuning text that doesn't parse throws from here; the guard releases the lock all the same.
void SpecPhotoMeterEmission_V1_Impl::LockAndPrepare(HandleLockGuard& guard)
{
    if (!guard.Acquire()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to Lock EmissionHandle of Pavilo"));
    }
    DeviceDriver::ConfigurationData items("PhysicalConditions");
    if (!handle->GetConditions(items, false)) {
        guard.FailWithLastError();
    }
    WriteTuningItems(items);
    if (!handle->SetConditions(items, false)) {
        guard.FailWithLastError();
    }
}

void SpecPhotoMeterEmission_V1_Impl::WriteTuningItems(DeviceDriver::ConfigurationData& items) const
{
    const Utilities::String countText = conditions.GetCondition("Orbel_NumberOfSamples");
    const Utilities::String timeText = conditions.GetCondition("Orbel_IntegrationTime");
    const long measurementCount = countText == undefined ? defaultCount : countText.ToLong();
    const double seconds = timeText == undefined ? defaultIntegrationTime : timeText.ToDouble();
    const bool high = conditions.GetCondition("Orbel_Gain") == "High";

    Items::SetMarkedU32(items, Items::countFromReplacementItem, 0);
    Items::SetMarkedU32(items, Items::count, static_cast<uint32_t>(measurementCount));
    Items::SetMarkedU32(items, Items::lampOffDuringMeasurement, 1);
    Items::SetMarkedU32(items, Items::lampOnAfterMeasurement, 0);
    Items::SetMarkedU32(items, Items::gain, high ? highGain : lowGain);
    Items::SetMarkedFloat(items, Items::integrationTime, static_cast<float>(seconds));
    Items::SetMarkedFloat(items, Items::lampTime, 0.2f);
    Items::SetMarkedU32(items, Items::adaptIntegrationTime, 0);
}

}
