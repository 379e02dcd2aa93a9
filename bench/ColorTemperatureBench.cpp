#include <benchmark/benchmark.h>

#include "cmetry/BlackBody.h"
#include "cmetry/ColorTemperatureFinder.h"

using CMetry::ColorTemperatureFinder;
using CMetry::HvMeasureConditions;
using CMetry::HvSpectrum;

namespace {

void BM_GetColorTemperatureOfABlackBody(benchmark::State& state)
{
    HvMeasureConditions emission;
    emission.SetCondition("Colorimetric.Illumination", "Emission");
    const HvSpectrum spectrum = CMetry::GetBlackBodySpectrum(static_cast<float>(state.range(0)), emission);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ColorTemperatureFinder().GetColorTemperature(spectrum));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetColorTemperatureOfABlackBody)->Arg(2856)->Arg(6500)->Arg(25000)->Unit(benchmark::kMicrosecond);

}
