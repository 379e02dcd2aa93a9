#include "diagnostics/String.h"
#include "utilities/String.h"

#include <benchmark/benchmark.h>

namespace {

void ShortStringConstruction(benchmark::State& state)
{
    for (auto _ : state) {
        Utilities::String text("Illumination");
        benchmark::DoNotOptimize(text.CString());
    }
}
BENCHMARK(ShortStringConstruction);

void LongStringConstruction(benchmark::State& state)
{
    for (auto _ : state) {
        Utilities::String text("Colorimetric.Illumination.Observer");
        benchmark::DoNotOptimize(text.CString());
    }
}
BENCHMARK(LongStringConstruction);

void ShortStringCopyAndCompare(benchmark::State& state)
{
    const Utilities::String source("Illumination");
    for (auto _ : state) {
        Utilities::String copy(source);
        benchmark::DoNotOptimize(copy != source);
    }
}
BENCHMARK(ShortStringCopyAndCompare);

void DiagnosticsStringConstruction(benchmark::State& state)
{
    for (auto _ : state) {
        Diagnostics::String text("Utilities::ExceptionOutOfBound: ");
        benchmark::DoNotOptimize(text.CString());
    }
}
BENCHMARK(DiagnosticsStringConstruction);

}
