#include "manager/pavilo/TristPhotoMeterScanning_V1_Impl.h"

#include "cmetry/CMetryCalculator.h"
#include "cmetry/HvSample.h"

namespace HviManager::PaviloDriver {

using CMetry::HvColorVector;
using CMetry::HvMeasureConditions;
using Utilities::List;

namespace {

List<HvColorVector> VectorsOf(const CMetry::HvSample& sample, const HvMeasureConditions& conditions)
{
    List<HvColorVector> vectors;
    for (auto spectrum = sample.Begin(); spectrum.IsValid(); ++spectrum) {
        vectors.Append(CMetry::CMetryCalculator::GetVector(spectrum.Current(), conditions));
    }
    return vectors;
}

}

TristPhotoMeterScanning_V1_Impl::TristPhotoMeterScanning_V1_Impl(
    Utilities::SmartPointer<SpecPhotoMeterScanning_V1> spectralScanning)
    : scanning(spectralScanning)
{
}

Diagnostics::String TristPhotoMeterScanning_V1_Impl::GetValueString()
{
    return Diagnostics::String();
}

void TristPhotoMeterScanning_V1_Impl::Calibrate()
{
    scanning->Calibrate();
}

List<HvColorVector> TristPhotoMeterScanning_V1_Impl::GetRecognizedColorVectors()
{
    const CMetry::HvSample sample = scanning->GetRecognizedSamples();
    return VectorsOf(sample, scanning->GetConditions());
}

List<HvColorVector> TristPhotoMeterScanning_V1_Impl::GetColorVectors()
{
    const CMetry::HvSample sample = scanning->GetSamples();
    return VectorsOf(sample, scanning->GetConditions());
}

HvMeasureConditions TristPhotoMeterScanning_V1_Impl::GetConditions()
{
    return GetMeasureConditions();
}

void TristPhotoMeterScanning_V1_Impl::SetConditions(const HvMeasureConditions& conditions)
{
    SetMeasureConditions(conditions);
}

void TristPhotoMeterScanning_V1_Impl::Measure(int32_t count)
{
    scanning->Measure(count);
}

HvMeasureConditions TristPhotoMeterScanning_V1_Impl::GetMeasureConditions()
{
    return scanning->GetMeasureConditions();
}

void TristPhotoMeterScanning_V1_Impl::SetMeasureConditions(const HvMeasureConditions& conditions)
{
    scanning->SetMeasureConditions(conditions);
}

}
