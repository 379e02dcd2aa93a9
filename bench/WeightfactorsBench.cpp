#include <benchmark/benchmark.h>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/Tristimulus.h"
#include "cmetry/WeightfactorCache.h"
#include "cmetry/Weightfactors.h"

using namespace CMetry;

namespace {

HvMeasureConditions ConditionsWith(const char* illumination)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", illumination);
    return conditions;
}

// A greyish red, the first of the CIE test colour samples.
HvSpectrum TestColourSample()
{
    const float values[36] = {0.22f, 0.25f, 0.26f, 0.25f, 0.24f, 0.24f, 0.23f, 0.23f, 0.22f, 0.22f, 0.21f, 0.22f, 0.22f,
        0.23f, 0.23f, 0.23f, 0.24f, 0.25f, 0.27f, 0.3f, 0.34f, 0.39f, 0.42f, 0.44f, 0.45f, 0.45f, 0.45f, 0.45f, 0.45f,
        0.45f, 0.46f, 0.46f, 0.46f, 0.46f, 0.47f, 0.47f};
    return HvSpectrum(values);
}

// Every round changes the illuminant, so that the cache builds new weights each time: a 5 nm table
// that is interpolated to 1 nm, and a 1 nm table that passes through.
void BM_IlluminantChangeRebuildsTheWeights(benchmark::State& state)
{
    const HvMeasureConditions d50 = ConditionsWith("D50");
    const HvMeasureConditions a = ConditionsWith("A");
    bool useA = false;
    for (auto _ : state) {
        benchmark::DoNotOptimize(WeightfactorCache::Update(useA ? a : d50));
        useA = !useA;
    }
}
BENCHMARK(BM_IlluminantChangeRebuildsTheWeights)->Unit(benchmark::kMicrosecond);

void BM_WeightfactorsOfDaylightRule(benchmark::State& state)
{
    const HvMeasureConditions daylight = ConditionsWith("Dxx, Temperature:6000");
    for (auto _ : state) {
        Weightfactors weights(daylight);
        benchmark::DoNotOptimize(weights.GetWhitePoint(0));
    }
}
BENCHMARK(BM_WeightfactorsOfDaylightRule)->Unit(benchmark::kMicrosecond);

void BM_XYZWithCachedWeights(benchmark::State& state)
{
    const HvMeasureConditions conditions;
    const HvSpectrum spectrum = TestColourSample();
    HvColorVector xyz;
    for (auto _ : state) {
        GetXYZ(spectrum, conditions, xyz);
        benchmark::DoNotOptimize(xyz[1]);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_XYZWithCachedWeights);

}
