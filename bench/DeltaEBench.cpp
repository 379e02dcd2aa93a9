#include <benchmark/benchmark.h>

#include <cmath>

#include "cmetry/ColorDifference.h"

using CMetry::ColorDifference;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

HvSpectrum Ramp(float start, float slope)
{
    HvSpectrum spectrum;
    for (uint16_t index = 0; index < 36; ++index) {
        spectrum[index] = start + slope * static_cast<float>(index);
    }
    return spectrum;
}

// The weights are built before the loop, so each iteration is two spectra to Lab and the formula.
void BM_GetDeltaECIE1994OfTwoSpectra(benchmark::State& state)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    conditions.SetCondition("ColorSpaceDescription.DeltaEFormula", "94");
    const HvSpectrum standard = Ramp(0.05f, 0.02f);
    const HvSpectrum sample = Ramp(0.08f, 0.019f);
    ColorDifference::GetDeltaE(standard, sample, conditions, 1.0f, 1.0f, 1.0f);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ColorDifference::GetDeltaE(standard, sample, conditions, 1.0f, 1.0f, 1.0f));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetDeltaECIE1994OfTwoSpectra);

}
