#include "manager/pavilo/TristPhotoMeterReflectance_V1_Impl.h"

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvSpectrum.h"

namespace HviManager::PaviloDriver {

TristPhotoMeterReflectance_V1_Impl::TristPhotoMeterReflectance_V1_Impl(
    Utilities::SmartPointer<SpecPhotoMeterReflectance_V1> inner)
    : inner(inner)
{
}

void TristPhotoMeterReflectance_V1_Impl::Calibrate()
{
    inner->Calibrate();
}

void TristPhotoMeterReflectance_V1_Impl::Measure()
{
    inner->Measure();
}

CMetry::HvColorVector TristPhotoMeterReflectance_V1_Impl::GetColorVector()
{
    const CMetry::HvMeasureConditions conditions = inner->GetMeasureConditions();
    const CMetry::HvSpectrum spectrum = inner->GetSample();
    return CMetry::CMetryCalculator::GetVector(spectrum, conditions);
}

CMetry::HvMeasureConditions TristPhotoMeterReflectance_V1_Impl::GetMeasureConditions()
{
    return inner->GetMeasureConditions();
}

void TristPhotoMeterReflectance_V1_Impl::SetMeasureConditions(const CMetry::HvMeasureConditions& conditions)
{
    inner->SetMeasureConditions(conditions);
}

}
