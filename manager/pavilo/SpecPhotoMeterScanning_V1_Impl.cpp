#include "manager/pavilo/SpecPhotoMeterScanning_V1_Impl.h"

#include "cmetry/HvSpectrum.h"
#include "driver/StateIds.h"
#include "manager/ExceptionHviModule.h"
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

SpecPhotoMeterScanning_V1_Impl::SpecPhotoMeterScanning_V1_Impl(SmartPointer<RemissionScanHandle> scanHandle)
    : handle(scanHandle)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
}

void SpecPhotoMeterScanning_V1_Impl::LockHandle(bool translateLockFailure)
{
    if (handle.IsNull()) {
        throw ExceptionHviModule(Utilities::Translated("Unable to access Pavilo"));
    }
    if (!handle->Lock()) {
        const char* text = "Unable to Lock RemissionScanHandle of Pavilo";
        throw ExceptionHviModule(translateLockFailure ? Utilities::Translated(text) : Utilities::String(text));
    }
}

void SpecPhotoMeterScanning_V1_Impl::FailWithHandleError()
{
    const Utilities::String text = handle->GetLastError();
    handle->Unlock();
    throw ExceptionHviModule(text);
}

void SpecPhotoMeterScanning_V1_Impl::Measure(int32_t count)
{
    LockHandle(true);
    ConfigurationData items("PhysicalConditions");
    bool done = handle->GetConditions(items, false);
    if (done) {
        SetScanItems(items, count);
        done = handle->SetConditions(items, false);
    }
    if (!done || !handle->Measure("Scan")) {
        FailWithHandleError();
    }
    scanData = SmartPointer<ScanData>();
}

bool SpecPhotoMeterScanning_V1_Impl::FetchScan()
{
    handle->Lock();
    bool fetched = !scanData.IsNull();
    DeviceDriver::SpectrumDataFifo* queue = nullptr;
    if (!fetched && handle->GetScan(queue)) {
        const auto length = static_cast<uint16_t>(queue->Size());
        SmartPointer<ScanData> spectra(new ScanData(length));
        unsigned long index = 0;
        SpectrumData spectrum;
        while (index < length && (!queue->IsEmpty() || !queue->IsFinished()) && queue->Pop(spectrum)) {
            (*spectra)[index++] = spectrum;
        }
        scanData = spectra;
        fetched = true;
    }
    handle->Unlock();
    return fetched;
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
    if (!FetchScan()) {
        handle->Unlock();
        throw Utilities::ExceptionOutOfBound("Invalid data");
    }
    const HvSample sample = SampleOf(*scanData);
    handle->Unlock();
    return sample;
}

// A recognition that fails leaves the raw scan in place for GetSamples.
HvSample SpecPhotoMeterScanning_V1_Impl::GetRecognizedSamples()
{
    RecognitionMarvane recognition;
    if (!FetchScan()) {
        FailWithHandleError();
    }
    ScanData patches(0);
    if (!recognition.Recognize(*scanData, patches)) {
        handle->Unlock();
        throw ExceptionHviModule("Recognition impossible");
    }
    const HvSample sample = SampleOf(patches);
    handle->Unlock();
    return sample;
}

void SpecPhotoMeterScanning_V1_Impl::Calibrate()
{
    LockHandle(false);
    ConfigurationData items("PhysicalConditions");
    bool done = handle->GetConditions(items, false);
    if (done) {
        SetCalibrationItems(items);
        done = handle->SetConditions(items, false);
    }
    if (!done || !handle->Calibrate()) {
        FailWithHandleError();
    }
    long filter = 0;
    if (handle->GetState(StateIds::filter, filter) && filter == StateIds::filterUVCut) {
        conditions.SetCondition("Physical.Filter", "UVCut");
    }
    handle->Unlock();
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
