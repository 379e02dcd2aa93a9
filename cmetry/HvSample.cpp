#include "cmetry/HvSample.h"

namespace CMetry {

HvSample::HvSample() = default;

HvSample::HvSample(const HvSample& other) = default;

HvSample& HvSample::operator=(const HvSample& other) = default;

HvSample::~HvSample() = default;

void HvSample::Add(const HvSpectrum& spectrum)
{
    spectra.Append(spectrum);
}

// Counted, so that a sample appended to itself stops after its own spectra.
void HvSample::Append(const HvSample& other)
{
    unsigned long remaining = other.spectra.Size();
    for (auto spectrum = other.spectra.Begin(); remaining > 0; ++spectrum, --remaining) {
        spectra.Append(spectrum.Current());
    }
}

bool HvSample::GetSpectrum(const HvMeasureConditions&, HvSpectrum& spectrum) const
{
    auto first = spectra.Begin();
    if (!first.IsValid()) {
        return false;
    }
    spectrum = first.Current();
    return true;
}

bool HvSample::operator==(const HvSample& other) const
{
    auto first = spectra.Begin();
    auto otherFirst = other.spectra.Begin();
    if (!first.IsValid() || !otherFirst.IsValid()) {
        return first.IsValid() == otherFirst.IsValid();
    }
    return first.Current() == otherFirst.Current();
}

Diagnostics::String HvSample::GetValueString() const
{
    Diagnostics::String text("MeasureValueList: ");
    text += "Count of elements: ";
    text += static_cast<long>(spectra.Size());
    return text;
}

}
