#pragma once

#include "manager/SpecPhotoMeterScanning_V1.h"
#include "manager/TristPhotoMeterScanning_V1.h"
#include "utilities/SmartPointer.h"

namespace HviManager::PaviloDriver {

// The spectra of a scan as colour vectors under the conditions of the scanning interface.
class TristPhotoMeterScanning_V1_Impl : public TristPhotoMeterScanning_V1 {
public:
    explicit TristPhotoMeterScanning_V1_Impl(Utilities::SmartPointer<SpecPhotoMeterScanning_V1> spectralScanning);

    Diagnostics::String GetValueString() override;
    void Calibrate() override;
    Utilities::List<CMetry::HvColorVector> GetRecognizedColorVectors() override;
    Utilities::List<CMetry::HvColorVector> GetColorVectors() override;
    CMetry::HvMeasureConditions GetConditions() override;
    void SetConditions(const CMetry::HvMeasureConditions& conditions) override;
    void Measure(int32_t count) override;
    CMetry::HvMeasureConditions GetMeasureConditions() override;
    void SetMeasureConditions(const CMetry::HvMeasureConditions& conditions) override;

private:
    Utilities::SmartPointer<SpecPhotoMeterScanning_V1> scanning;
};

}
