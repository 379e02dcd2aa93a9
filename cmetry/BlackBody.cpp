#include "cmetry/BlackBody.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ConditionKey.h"
#include "cmetry/Tristimulus.h"
#include "utilities/String.h"

namespace CMetry {

using Utilities::String;

namespace {

// The constants as the instrument's colorimetry has always used them, not the latest figures: the
// temperatures it reports depend on them.
constexpr double planck = 6.6262e-34;
constexpr double boltzmann = 1.3806e-23;
constexpr double lightSpeed = 2.9979e8;
constexpr double firstRadiation = 2.0 * planck * lightSpeed * lightSpeed;
constexpr double secondRadiation = lightSpeed * planck / boltzmann;
constexpr double metresPerNanometre = 1e-9;

uint16_t ReadGridValue(const HvMeasureConditions& conditions, const char* key)
{
    return static_cast<uint16_t>(conditions.GetCondition(String(key)).ToLong());
}

HvMeasureConditions AsEmission(const HvMeasureConditions& conditions)
{
    HvMeasureConditions emission(conditions);
    emission.SetIllumination(IlluminationTYPE(Illumination::Emission));
    return emission;
}

}

BlackBody::BlackBody(const HvMeasureConditions& conditions)
    : count(0), wavelengths{}, scales{}, emissionConditions(AsEmission(conditions)),
      xyzConditions(WithColorSpace(emissionConditions, ColorSpaceKeyword::cieXYZ))
{
    TakeGrid(conditions);
}

// The step divides by the count and adds one, not by the count less one: on the instrument's grid
// both give 10 nm, and the grid of the black body is the one that has always been used.
void BlackBody::TakeGrid(const HvMeasureConditions& conditions)
{
    const uint16_t points = ReadGridValue(conditions, ConditionKey::numberOfDataPoints);
    const uint16_t minimum = ReadGridValue(conditions, ConditionKey::wavelengthMinimum);
    const uint16_t maximum = ReadGridValue(conditions, ConditionKey::wavelengthMaximum);
    count = std::min<uint16_t>(points, HvSpectrum::numberOfValues);
    const int step = points == 0 ? 0 : (maximum - minimum) / points + 1;
    for (uint16_t index = 0; index < count; ++index) {
        wavelengths[index] = (minimum + index * step) * metresPerNanometre;
        scales[index] = firstRadiation / std::pow(wavelengths[index], 5.0);
    }
}

// Planck's law of black-body radiation: Planck 1900, with constants of CODATA 1973.
HvSpectrum BlackBody::GetSpectrum(float temperature) const
{
    std::array<float, HvSpectrum::numberOfValues> values{};
    for (uint16_t index = 0; index < count; ++index) {
        values[index] =
            static_cast<float>(scales[index] / (std::exp(secondRadiation / (temperature * wavelengths[index])) - 1.0));
    }
    return HvSpectrum(values.data(), emissionConditions);
}

HvColorVector BlackBody::GetXYZ(float temperature) const
{
    HvColorVector xyz;
    if (CMetry::GetXYZ(GetSpectrum(temperature), xyzConditions, xyz)) {
        const float y = xyz[1];
        xyz[0] = 100.0f * xyz[0] / y;
        xyz[2] = 100.0f * xyz[2] / y;
        xyz[1] = 100.0f;
    }
    return xyz;
}

HvSpectrum GetBlackBodySpectrum(float temperature, const HvMeasureConditions& conditions)
{
    return BlackBody(conditions).GetSpectrum(temperature);
}

HvColorVector GetBlackBodyXYZ(float temperature, const HvMeasureConditions& conditions)
{
    return BlackBody(conditions).GetXYZ(temperature);
}

}
