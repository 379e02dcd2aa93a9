#pragma once

#include <cstdint>
#include <functional>

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "driver/ConfigurationData.h"
#include "driver/RemissionScanHandle.h"
#include "driver/SpectrumData.h"
#include "manager/SpecPhotoMeterScanning_V1.h"
#include "manager/pavilo/HandleLockGuard.h"
#include "utilities/SmartPointer.h"
#include "utilities/Vector.h"

namespace HviManager::PaviloDriver {

// A scan on the instrument, answered either as every raw spectrum or as one spectrum per
// recognised patch. Measure keeps the handle locked until the result has been read, so that no
// other client reaches the instrument in between.
class SpecPhotoMeterScanning_V1_Impl : public SpecPhotoMeterScanning_V1 {
public:
    explicit SpecPhotoMeterScanning_V1_Impl(
        const Utilities::SmartPointer<DeviceDriver::RemissionScanHandle>& scanHandle);

    // -1 leaves the count of the instrument's own conditions.
    void Measure(int32_t count) override;
    CMetry::HvSample GetRecognizedSamples() override;
    CMetry::HvSample GetSamples() override;
    void Calibrate() override;
    CMetry::HvMeasureConditions GetConditions() override;
    void SetConditions(const CMetry::HvMeasureConditions& newConditions) override;
    Diagnostics::String GetValueString() override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;

private:
    using ScanData = Utilities::Vector<DeviceDriver::SpectrumData>;

    // Throws when there is no handle.
    DeviceDriver::RemissionScanHandle& AccessibleHandle() const;
    // Throws when the lock can't be had or the items don't reach the handle.
    void LockAndWriteItems(HandleLockGuard& guard,
        const std::function<void(DeviceDriver::ConfigurationData&)>& setItems, bool translateLockFailure);
    // Brings the spectra of the last scan over from the handle, once per scan.
    bool FetchScan();
    CMetry::HvSample SampleOf(const ScanData& spectra) const;

    Utilities::SmartPointer<ScanData> scanData;
    Utilities::SmartPointer<DeviceDriver::RemissionScanHandle> handle;
    CMetry::HvMeasureConditions conditions;
};

}
