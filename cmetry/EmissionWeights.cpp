#include "cmetry/EmissionWeights.h"

#include "cmetry/ExceptionCMetry.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Weightfactors.h"

namespace CMetry {

namespace {

const Weightfactors& TwoDegreeEmission()
{
    static const Weightfactors weights([] {
        HvMeasureConditions conditions;
        conditions.SetCondition("Colorimetric.Illumination", "Emission");
        conditions.SetObserver(Observer::TwoDegree);
        return conditions;
    }());
    return weights;
}

double Dot(std::span<const float> weights, const EmissionWeights::Values& values)
{
    double sum = 0.0;
    for (std::size_t index = 0; index < values.size(); ++index) {
        sum += static_cast<double>(weights[index]) * values[index];
    }
    return sum;
}

}

EmissionWeights::Values EmissionWeights::ValuesOf(const HvSpectrum& spectrum)
{
    Values values;
    for (uint16_t index = 0; index < values.size(); ++index) {
        values[index] = spectrum[index];
    }
    return values;
}

EmissionWeights::Xyz EmissionWeights::XyzOf(const Values& values)
{
    const Weightfactors& weights = TwoDegreeEmission();
    return {Dot(weights.GetWeights(0), values), Dot(weights.GetWeights(1), values), Dot(weights.GetWeights(2), values)};
}

// CIE 1960 UCS: u = 4X / (X + 15Y + 3Z), v = 6Y / (X + 15Y + 3Z).
EmissionWeights::Uv EmissionWeights::UvOf(const Xyz& xyz)
{
    const double denominator = xyz.x + 15.0 * xyz.y + 3.0 * xyz.z;
    if (!(denominator > 0.0)) {
        throw ExceptionCMetry(TranslatedMessage("Chromaticity of a black spectrum"));
    }
    return {4.0 * xyz.x / denominator, 6.0 * xyz.y / denominator};
}

}
