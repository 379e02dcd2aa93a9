#include <benchmark/benchmark.h>

#include "cmetry/HvLab.h"
#include "cmetry/SpectrumFit.h"

using CMetry::HvMeasureConditions;
using CMetry::SpectrumFit;

namespace {

// About 500 steps, each one spectrum to XYZ, after the 36 contributions.
void BM_GetSpectrumOfSaturatedGreen(benchmark::State& state)
{
    const CMetry::HvLab green(95.0f, -60.0f, 60.0f, HvMeasureConditions());
    for (auto _ : state) {
        benchmark::DoNotOptimize(SpectrumFit::GetSpectrum(green));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetSpectrumOfSaturatedGreen)->Unit(benchmark::kMillisecond);

}
