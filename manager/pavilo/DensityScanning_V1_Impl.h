#pragma once

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSample.h"
#include "cmetry/HvSpectrum.h"
#include "driver/RemissionHandle.h"
#include "manager/DensityScanning_V1.h"
#include "manager/SpecPhotoMeterScanning_V1.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The spectra of a scan as densities. The patches are recognised once per scan and then read
// again under whatever conditions the client sets.
class DensityScanning_V1_Impl : public DensityScanning_V1 {
public:
    DensityScanning_V1_Impl(Utilities::SmartPointer<DeviceDriver::RemissionHandle> remissionHandle,
        Utilities::SmartPointer<SpecPhotoMeterScanning_V1> spectralScanning);

    Diagnostics::String GetValueString() override;
    void Calibrate() override;
    Utilities::List<float> GetDensities() override;
    Utilities::List<float> GetRecognizedDensities() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& newConditions) override;
    CMetry::HvMeasureConditions& GetMeasureConditions() override;
    void Measure(int32_t count) override;
    void SetSubstrate(const CMetry::HvSpectrum& spectrum) override;
    CMetry::HvSpectrum& GetSubstrate() override;
    CMetry::HvSpectrum& MeasureSubstrate() override;

private:
    Utilities::List<float> DensitiesOf(const CMetry::HvSample& sample) const;

    bool fresh;
    CMetry::HvSample recognized;
    CMetry::HvMeasureConditions conditions;
    CMetry::HvSpectrum substrate;
    Utilities::SmartPointer<SpecPhotoMeterScanning_V1> scanning;
    Utilities::SmartPointer<DeviceDriver::RemissionHandle> handle;
};

}
