#include "manager/pavilo/TristPhotoMeterEmission_V1_Impl.h"

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvSpectrum.h"

namespace HviManager::PaviloDriver {

TristPhotoMeterEmission_V1_Impl::TristPhotoMeterEmission_V1_Impl(
    const Utilities::SmartPointer<DeviceDriver::EmissionHandle>& handle)
    : spectral(handle)
{
}

void TristPhotoMeterEmission_V1_Impl::Calibrate()
{
    spectral.Calibrate();
}

void TristPhotoMeterEmission_V1_Impl::Measure()
{
    spectral.Measure();
}

CMetry::HvColorVector TristPhotoMeterEmission_V1_Impl::GetColorVector()
{
    const CMetry::HvMeasureConditions conditions = spectral.GetMeasureConditions();
    const CMetry::HvSpectrum spectrum = spectral.GetSample();
    return CMetry::CMetryCalculator::GetVector(spectrum, conditions);
}

CMetry::HvMeasureConditions TristPhotoMeterEmission_V1_Impl::GetMeasureConditions()
{
    return spectral.GetMeasureConditions();
}

void TristPhotoMeterEmission_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& conditions)
{
    spectral.SetMeasureConditions(conditions);
}

}
