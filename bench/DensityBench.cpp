#include <benchmark/benchmark.h>

#include <array>

#include "cmetry/Density.h"
#include "cmetry/PaperWhite.h"

using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

HvSpectrum Cyan()
{
    std::array<float, 36> values;
    for (std::size_t index = 0; index < values.size(); ++index) {
        values[index] = index < 18 ? 0.7f : 0.05f;
    }
    return HvSpectrum(values.data());
}

HvSpectrum Paper()
{
    std::array<float, 36> values;
    values.fill(0.9f);
    return HvSpectrum(values.data());
}

void BM_GetDensityAutomaticAbsolute(benchmark::State& state)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    const HvSpectrum spectrum = Cyan();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CMetry::GetDensity(spectrum, conditions));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetDensityAutomaticAbsolute);

// The default conditions: white base "Automatic", so the paper white is subtracted as well.
void BM_GetDensityAutomaticPaperRelative(benchmark::State& state)
{
    CMetry::SetPaperWhite(Paper());
    const HvMeasureConditions conditions;
    const HvSpectrum spectrum = Cyan();
    for (auto _ : state) {
        benchmark::DoNotOptimize(CMetry::GetDensity(spectrum, conditions));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetDensityAutomaticPaperRelative);

}
