#include "manager/pavilo/DensityScanning_V1_Impl.h"

#include "cmetry/Density.h"
#include "cmetry/PaperWhite.h"
#include "manager/pavilo/DensityReflectance_V1_Impl.h"
#include "utilities/Exception.h"

namespace HviManager::PaviloDriver {

using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;
using Utilities::List;

DensityScanning_V1_Impl::DensityScanning_V1_Impl(Utilities::SmartPointer<DeviceDriver::RemissionHandle> remissionHandle,
    Utilities::SmartPointer<SpecPhotoMeterScanning_V1> spectralScanning)
    : fresh(false), scanning(spectralScanning), handle(remissionHandle)
{
    conditions.SetCondition("Colorimetric.Illumination", "D50");
}

Diagnostics::String DensityScanning_V1_Impl::GetValueString()
{
    return "Pavilo DensityScanning";
}

// Taking over the conditions that the calibration found is a courtesy; a scanning interface that
// can't give them leaves the present ones in place.
void DensityScanning_V1_Impl::Calibrate()
{
    scanning->Calibrate();
    try {
        conditions = scanning->GetMeasureConditions();
    } catch (const Utilities::Exception&) {
        // The present conditions stay.
    }
}

List<float> DensityScanning_V1_Impl::DensitiesOf(const CMetry::HvSample& sample) const
{
    List<float> densities;
    for (auto spectrum = sample.Begin(); spectrum.IsValid(); ++spectrum) {
        densities.Append(CMetry::GetDensity(spectrum.Current(), conditions));
    }
    return densities;
}

List<float> DensityScanning_V1_Impl::GetDensities()
{
    return DensitiesOf(scanning->GetSamples());
}

List<float> DensityScanning_V1_Impl::GetRecognizedDensities()
{
    if (fresh) {
        recognized = scanning->GetRecognizedSamples();
        fresh = false;
    }
    return DensitiesOf(recognized);
}

void DensityScanning_V1_Impl::SetMeasureConditions(const HvMeasureConditions& newConditions)
{
    conditions = newConditions;
    scanning->SetMeasureConditions(conditions);
}

HvMeasureConditions& DensityScanning_V1_Impl::GetMeasureConditions()
{
    return conditions;
}

void DensityScanning_V1_Impl::Measure(int32_t count)
{
    scanning->Measure(count);
    fresh = true;
}

void DensityScanning_V1_Impl::SetSubstrate(const HvSpectrum& spectrum)
{
    substrate = spectrum;
    CMetry::SetPaperWhite(substrate);
}

HvSpectrum& DensityScanning_V1_Impl::GetSubstrate()
{
    return substrate;
}

HvSpectrum& DensityScanning_V1_Impl::MeasureSubstrate()
{
    DensityReflectance_V1_Impl reflectance(handle);
    reflectance.SetMeasureConditions(conditions);
    substrate = reflectance.MeasureSubstrate();
    return substrate;
}

}
