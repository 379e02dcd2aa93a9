#include "cmetry/HvSpectrum.h"

#include <algorithm>
#include <cmath>

namespace CMetry {

namespace {

constexpr double gridMinimum = HvMeasureConditions::wavelengthMinimum;
constexpr double gridMaximum = HvMeasureConditions::wavelengthMaximum;
constexpr double gridStep = (gridMaximum - gridMinimum) / (HvMeasureConditions::numberOfDataPoints - 1);

}

HvSpectrum::HvSpectrum() : values{}, valid(true) { }

HvSpectrum::HvSpectrum(const Utilities::Vector<float>& values) : valid(true)
{
    CopyFrom(values);
}

HvSpectrum::HvSpectrum(const Utilities::Vector<float>& values, const HvMeasureConditions& conditions)
    : valid(true), conditions(conditions)
{
    CopyFrom(values);
}

HvSpectrum::HvSpectrum(const float* values) : valid(true)
{
    std::copy(values, values + numberOfValues, this->values.begin());
}

HvSpectrum::HvSpectrum(const float* values, const HvMeasureConditions& conditions) : valid(true), conditions(conditions)
{
    std::copy(values, values + numberOfValues, this->values.begin());
}

HvSpectrum::HvSpectrum(const HvSpectrum& other) = default;

HvSpectrum& HvSpectrum::operator=(const HvSpectrum& other) = default;

HvSpectrum::~HvSpectrum() = default;

void HvSpectrum::CopyFrom(const Utilities::Vector<float>& source)
{
    for (uint16_t index = 0; index < numberOfValues; ++index) {
        values[index] = source[index];
    }
}

Utilities::Vector<float> HvSpectrum::ToVector() const
{
    Utilities::Vector<float> vector(numberOfValues);
    for (uint16_t index = 0; index < numberOfValues; ++index) {
        vector[index] = values[index];
    }
    return vector;
}

bool HvSpectrum::HasSignal() const
{
    return std::any_of(values.begin(), values.end(), [](float value) { return value > 0.0f; });
}

uint16_t HvSpectrum::GetWavelength(uint16_t index) const
{
    if (index >= numberOfValues) {
        return 0;
    }
    return static_cast<uint16_t>(std::trunc(index * (gridMaximum - gridMinimum) / (numberOfValues - 1) + gridMinimum));
}

uint16_t HvSpectrum::GetIndex(uint16_t wavelength) const
{
    const double index = std::trunc((wavelength - gridMinimum) / gridStep);
    if (index < 0.0 || index > numberOfValues - 1) {
        return 0;
    }
    return static_cast<uint16_t>(index);
}

bool HvSpectrum::operator==(const HvSpectrum& other) const
{
    return values == other.values && valid == other.valid && conditions == other.conditions;
}

Diagnostics::String HvSpectrum::GetValueString() const
{
    Diagnostics::String text("HvSpectrum: ");
    text += valid ? "valid" : "invalid";
    text += ", values: ";
    text += Diagnostics::String(values[0]);
    text += " ... ";
    text += Diagnostics::String(values[numberOfValues - 1]);
    return text;
}

}
