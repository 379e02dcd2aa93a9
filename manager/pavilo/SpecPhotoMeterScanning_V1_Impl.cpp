#include "manager/pavilo/SpecPhotoMeterScanning_V1_Impl.h"

#include "cmetry/HvSpectrum.h"
#include "driver/StateIds.h"
#include "manager/ExceptionHviModule.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "manager/pavilo/PhysicalConditionItems.h"
#include "manager/pavilo/RecognitionMarvane.h"
#include "utilities/ExceptionOutOfBound.h"
#include "utilities/LanguageTranslator.h"

namespace HviManager::PaviloDriver {

using CMetry::HvMeasureConditions;
using CMetry::HvSample;
using DeviceDriver::ConfigurationData;
using DeviceDriver::RemissionScanHandle;
using DeviceDriver::SpectrumData;
using DeviceDriver::StateIds;
using Utilities::SmartPointer;
using Items = PhysicalConditionItems;

namespace {

// Ten readings a position unless the client gives its own count, which the instrument takes
// from the replacement item.
void SetScanItems(ConfigurationData& items, int32_t count)
{
    Items::SetReflectanceItems(items, 10, true, false);
    Items::SetMarkedU32(items, Items::replacementCount, static_cast<uint32_t>(count));
}

// A hundred readings at an integration time that the instrument adapts.
void SetCalibrationItems(ConfigurationData& items)
{
    Items::SetMarkedFloat(items, Items::integrationTime, 0.0204f);
    Items::SetReflectanceItems(items, 100, false, true);
}

}

SpecPhotoMeterScanning_V1_Impl::SpecPhotoMeterScanning_V1_Impl(const SmartPointer<RemissionScanHandle>& scanHandle)
    : handle(scanHandle)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
}

RemissionScanHandle& SpecPhotoMeterScanning_V1_Impl::AccessibleHandle() const
{
    if (handle.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to access Pavilo"));
    }
    return *handle;
}

// A calibration reports a missed lock in English whatever the language; a measurement translates it.
void SpecPhotoMeterScanning_V1_Impl::LockAndWriteItems(
    HandleLockGuard& guard, const std::function<void(ConfigurationData&)>& setItems, bool translateLockFailure)
{
    if (!guard.Acquire()) {
        const char* text = "Unable to Lock RemissionScanHandle of Pavilo";
        throw ExceptionHviModule(translateLockFailure ? Utilities::Translated(text) : Utilities::String(text));
    }
    ConfigurationData items("PhysicalConditions");
    if (!handle->GetConditions(items, false)) {
        guard.FailWithLastError();
    }
    setItems(items);
    if (!handle->SetConditions(items, false)) {
        guard.FailWithLastError();
    }
}

void SpecPhotoMeterScanning_V1_Impl::Measure(int32_t count)
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteItems(
        guard, [count](ConfigurationData& items) { SetScanItems(items, count); }, true);
    if (!handle->Measure("Scan")) {
        guard.FailWithLastError();
    }
    scanData = SmartPointer<ScanData>();
    guard.KeepHeld();
}

bool SpecPhotoMeterScanning_V1_Impl::FetchScan()
{
    if (!scanData.IsNull()) {
        return true;
    }
    HandleLockGuard guard(*handle);
    DeviceDriver::SpectrumDataFifo* queue = nullptr;
    if (!guard.Acquire() || !handle->GetScan(queue)) {
        return false;
    }
    const auto length = static_cast<uint16_t>(queue->Size());
    SmartPointer<ScanData> spectra(new ScanData(length));
    unsigned long index = 0;
    SpectrumData spectrum;
    while (index < length && (!queue->IsEmpty() || !queue->IsFinished()) && queue->Pop(spectrum)) {
        (*spectra)[index++] = spectrum;
    }
    scanData = spectra;
    return true;
}

HvSample SpecPhotoMeterScanning_V1_Impl::SampleOf(const ScanData& spectra) const
{
    HvSample sample;
    for (unsigned long index = 0; index < spectra.Size(); ++index) {
        sample.Add(CMetry::HvSpectrum(spectra[index].Load(), conditions));
    }
    return sample;
}

HvSample SpecPhotoMeterScanning_V1_Impl::GetSamples()
{
    HandleLockGuard guard(*handle);
    guard.TakeOver();
    if (!FetchScan()) {
        throw Utilities::ExceptionOutOfBound("Invalid data");
    }
    return SampleOf(*scanData);
}

// A recognition that fails leaves the raw scan in place for GetSamples.
HvSample SpecPhotoMeterScanning_V1_Impl::GetRecognizedSamples()
{
    HandleLockGuard guard(*handle);
    guard.TakeOver();
    if (!FetchScan()) {
        guard.FailWithLastError();
    }
    ScanData patches(0);
    if (!RecognitionMarvane().Recognize(*scanData, patches)) {
        throw ExceptionHviModule("Recognition impossible");
    }
    return SampleOf(patches);
}

void SpecPhotoMeterScanning_V1_Impl::Calibrate()
{
    HandleLockGuard guard(AccessibleHandle());
    LockAndWriteItems(guard, SetCalibrationItems, false);
    if (!handle->Calibrate()) {
        guard.FailWithLastError();
    }
    long filter = 0;
    if (handle->GetState(StateIds::filter, filter) && filter == StateIds::filterUVCut) {
        conditions.SetCondition("Physical.Filter", "UVCut");
    }
}

HvMeasureConditions SpecPhotoMeterScanning_V1_Impl::GetConditions()
{
    return GetMeasureConditions();
}

void SpecPhotoMeterScanning_V1_Impl::SetConditions(const HvMeasureConditions& newConditions)
{
    SetMeasureConditions(newConditions);
}

Diagnostics::String SpecPhotoMeterScanning_V1_Impl::GetValueString()
{
    return Diagnostics::String();
}

HvMeasureConditions SpecPhotoMeterScanning_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void SpecPhotoMeterScanning_V1_Impl::SetMeasureConditions(const HvMeasureConditions& newConditions)
{
    conditions = newConditions;
}

}
