#include "cmetry/SpectrumFit.h"

#include <algorithm>
#include <cmath>

#include "cmetry/CMetryCalculator.h"
#include "cmetry/ColorDifference.h"
#include "cmetry/ColorSpaceConversion.h"
#include "cmetry/ColorSpaceKeyword.h"
#include "cmetry/ConditionKey.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/TranslatedMessage.h"
#include "cmetry/Tristimulus.h"

namespace CMetry {

namespace {

constexpr int noDataPoint = HvSpectrum::numberOfValues;
constexpr float startValue = 0.5f;
constexpr float closeEnough = 0.001f;
constexpr double leastImprovement = 1e-15;

// Summed in float, as the fit has always done: the steps it takes depend on it.
float Dot(const std::array<float, 3>& first, const std::array<float, 3>& second)
{
    float sum = 0.0f;
    for (std::size_t axis = 0; axis < first.size(); ++axis) {
        sum += first[axis] * second[axis];
    }
    return sum;
}

std::array<float, 3> Channels(const HvColorVector& vector)
{
    return {vector[0], vector[1], vector[2]};
}

HvSpectrum Flat(float value, const HvMeasureConditions& conditions)
{
    std::array<float, HvSpectrum::numberOfValues> values;
    values.fill(value);
    return HvSpectrum(values.data(), conditions);
}

}

SpectrumFit::SpectrumFit(const HvColorVector& lab, double tolerance, bool useCIE94, int32_t maximumSteps)
    : lab(lab), tolerance(tolerance), useCIE94(useCIE94), maximumSteps(maximumSteps),
      steps(0), contributions{}, contributionLengths{}, target{},
      current(Flat(startValue, lab.GetConditions())), residual{}, residualLength(0.0f)
{
}

bool SpectrumFit::Run(HvSpectrum& out)
{
    steps = 0;
    current = Flat(startValue, lab.GetConditions());
    bool fitted = false;
    if (TakeContributions() && UpdateResidual()) {
        float error = 1e38f;
        bool done = false;
        while (!done) {
            ++steps;
            residualLength = std::sqrt(Dot(residual, residual));
            double cosine = 0.0;
            const int best = BestDataPoint(cosine);
            if (best != noDataPoint && contributionLengths[best] > 0.0f) {
                Move(best, cosine);
            }
            const bool computed = UpdateResidual();
            const float previousError = error;
            error = Dot(residual, residual);
            fitted = computed && error < closeEnough && IsWithinTolerance();
            done = fitted;
            if (!computed || static_cast<double>(previousError) - error < leastImprovement || steps > maximumSteps) {
                fitted = false;
                done = true;
            }
        }
    }
    out = current;
    return fitted;
}

// The contribution of each data point is the XYZ of a spectrum of 1.0 there and 0 elsewhere.
bool SpectrumFit::TakeContributions()
{
    const HvMeasureConditions& conditions = lab.GetConditions();
    HvSpectrum unit = Flat(0.0f, conditions);
    HvColorVector xyz;
    for (uint16_t index = 0; index < HvSpectrum::numberOfValues; ++index) {
        unit[index] = 1.0f;
        if (!GetXYZ(unit, conditions, xyz)) {
            return false;
        }
        unit[index] = 0.0f;
        contributions[index] = Channels(xyz);
        contributionLengths[index] = std::sqrt(Dot(contributions[index], contributions[index]));
    }
    HvColorVector targetXYZ;
    ConvertLabToXYZ(lab, targetXYZ);
    for (uint16_t axis = 0; axis < 3; ++axis) {
        target[axis] = std::max(targetXYZ[axis], 0.0f);
    }
    return true;
}

bool SpectrumFit::UpdateResidual()
{
    if (!GetXYZ(current, lab.GetConditions(), currentXYZ)) {
        return false;
    }
    for (uint16_t axis = 0; axis < 3; ++axis) {
        residual[axis] = target[axis] - currentXYZ[axis];
    }
    return true;
}

// The data point that can still move towards the target and whose contribution lies at the
// smallest angle to the residual, either way along it; of equal angles the first.
int SpectrumFit::BestDataPoint(double& cosine) const
{
    int best = noDataPoint;
    double bestAngle = 1e38;
    for (int index = 0; index < noDataPoint; ++index) {
        const float along = Dot(contributions[index], residual);
        const float value = current[static_cast<uint16_t>(index)];
        if ((along >= 0.0f && value >= 1.0f) || (along < 0.0f && value <= 0.0f)) {
            continue;
        }
        const float scale = contributionLengths[index] * residualLength;
        const double candidate = scale > 0.0f ? std::clamp(static_cast<double>(along) / scale, -1.0, 1.0) : 0.0;
        const double angle = std::acos(std::fabs(candidate));
        if (angle < bestAngle) {
            best = index;
            bestAngle = angle;
            cosine = candidate;
        }
    }
    return best;
}

// The step that removes the part of the residual along the contribution, within 0 to 1.
void SpectrumFit::Move(int index, double cosine)
{
    float& value = current[static_cast<uint16_t>(index)];
    const double moved = value + cosine * residualLength / contributionLengths[index];
    value = std::clamp(static_cast<float>(moved), 0.0f, 1.0f);
}

bool SpectrumFit::IsWithinTolerance() const
{
    HvColorVector currentLab;
    ConvertXYZToLab(currentXYZ, currentLab);
    float difference = 0.0f;
    if (useCIE94) {
        HvColorVector standard(lab);
        standard.GetConditions().SetCondition(Utilities::String(ConditionKey::deltaEFormula), Utilities::String("94"));
        currentLab.SetConditions(standard.GetConditions());
        difference = ColorDifference::GetDeltaE(standard, currentLab, 1.0f, 1.0f, 1.0f);
    } else {
        currentLab.Subtract(lab);
        difference = static_cast<float>(currentLab.GetLength());
    }
    return difference < tolerance;
}

HvSpectrum SpectrumFit::GetSpectrum(const HvColorVector& vector)
{
    const HvColorVector lab = CMetryCalculator::Convert(vector, Utilities::String(ColorSpaceKeyword::cieLab));
    HvSpectrum spectrum;
    if (!FitSpectrum(lab, spectrum, 0.1, false, 1000)) {
        throw ExceptionCMetry(TranslatedMessage("CMetryCalculator: Conversion out of Range"));
    }
    return spectrum;
}

bool FitSpectrum(const HvColorVector& lab, HvSpectrum& out, double tolerance, bool useCIE94, int32_t maximumSteps)
{
    return SpectrumFit(lab, tolerance, useCIE94, maximumSteps).Run(out);
}

}
