#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "cmetry/SpectrumBatch.h"

using CMetry::HvMeasureConditions;
using CMetry::SpectrumBatch;

namespace {

constexpr std::size_t spectrumCount = 4096;

// Spectra → CIELab for a block of spectra under one set of conditions, the weights built before
// the loop; bench/NumpyFloor.py measures the same work in numpy.
void BM_BatchSpectraToCIELab(benchmark::State& state)
{
    std::mt19937 generator(23);
    std::uniform_real_distribution<float> reflectance(0.0f, 1.0f);
    std::vector<float> spectra(spectrumCount * SpectrumBatch::valuesPerSpectrum);
    for (float& value : spectra) {
        value = reflectance(generator);
    }
    std::vector<float> lab(spectrumCount * SpectrumBatch::valuesPerResult);
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.WhiteBase", "Absolute");
    const SpectrumBatch batch(conditions);
    for (auto _ : state) {
        batch.GetLab(spectra, lab);
        benchmark::DoNotOptimize(lab.data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * spectrumCount));
}
BENCHMARK(BM_BatchSpectraToCIELab);

}
