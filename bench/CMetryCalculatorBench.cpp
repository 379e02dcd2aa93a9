#include <benchmark/benchmark.h>

#include <array>

#include "cmetry/CMetryCalculator.h"

using CMetry::CMetryCalculator;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

HvSpectrum Sample()
{
    std::array<float, 36> values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        values[index] = 0.05f + 0.02f * static_cast<float>(index);
    }
    return HvSpectrum(values.data());
}

// The weights are built before the loop, so each iteration is the everyday path of a measurement.
void BM_GetVectorToCIELabWithCachedWeights(benchmark::State& state)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    const HvSpectrum spectrum = Sample();
    CMetryCalculator::GetVector(spectrum, conditions);
    for (auto _ : state) {
        benchmark::DoNotOptimize(CMetryCalculator::GetVector(spectrum, conditions));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetVectorToCIELabWithCachedWeights);

}
