#include "cmetry/Tristimulus.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "cmetry/PaperWhite.h"
#include "cmetry/WeightfactorCache.h"

namespace CMetry {

// The axes run side by side so that their sums don't wait for each other.
std::array<float, 3> Tristimulus(const Weightfactors& weightfactors, const float* values)
{
    const std::span<const float> x = weightfactors.GetWeights(0);
    const std::span<const float> y = weightfactors.GetWeights(1);
    const std::span<const float> z = weightfactors.GetWeights(2);
    std::array<float, 3> xyz{};
    for (std::size_t index = 0; index < x.size(); ++index) {
        xyz[0] += static_cast<double>(x[index]) * values[index];
        xyz[1] += static_cast<double>(y[index]) * values[index];
        xyz[2] += static_cast<double>(z[index]) * values[index];
    }
    return xyz;
}

// Works on the caller's spectrum and conditions wherever it can, and copies them only where they
// change: the values under a paper white, the conditions of emission.
bool GetXYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out)
{
    Utilities::SmartPointer<const Weightfactors> weightfactors;
    return GetXYZ(spectrum, conditions, out, weightfactors);
}

bool GetXYZ(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, HvColorVector& out,
    Utilities::SmartPointer<const Weightfactors>& weightfactors)
{
    const bool emission = spectrum.Conditions().GetIllumination().GetType() == Illumination::Emission;
    std::optional<HvMeasureConditions> emissionConditions;
    if (emission) {
        emissionConditions.emplace(conditions);
        emissionConditions->SetIllumination(IlluminationTYPE(Illumination::Emission));
    }
    const HvMeasureConditions& effective = emission ? *emissionConditions : conditions;
    const float* values = spectrum.GetValues();
    std::array<float, HvSpectrum::numberOfValues> relative;
    if (!emission && effective.GetWhiteBase() == WhiteBase::Paper) {
        std::copy(values, values + HvSpectrum::numberOfValues, relative.begin());
        if (!DivideByPaperWhite(effective, relative.data())) {
            return false;
        }
        values = relative.data();
    }
    weightfactors = WeightfactorCache::Update(effective);
    const std::array<float, 3> xyz = Tristimulus(*weightfactors, values);
    out.SetConditions(effective, spectrum.Conditions());
    for (uint16_t axis = 0; axis < 3; ++axis) {
        out[axis] = xyz[axis];
    }
    out[3] = 0.0f;
    return true;
}

}
