#include <benchmark/benchmark.h>

#include "utilities/Map.h"
#include "utilities/String.h"

using Utilities::Map;
using Utilities::String;

namespace {

// A map of the size the system keeps its descriptors and settings in, read by a short key that
// is present: the everyday look-up.
Map<String, long> MapOfThirtyEntries()
{
    Map<String, long> map;
    for (long index = 0; index < 30; ++index) {
        map[String("Item") + String(index)] = index;
    }
    return map;
}

void BM_MapLookUpOfShortKey(benchmark::State& state)
{
    Map<String, long> map = MapOfThirtyEntries();
    const String key("Item17");
    for (auto _ : state) {
        benchmark::DoNotOptimize(map[key]);
    }
}
BENCHMARK(BM_MapLookUpOfShortKey);

void BM_MapFindOfShortKeyInConstMap(benchmark::State& state)
{
    const Map<String, long> map = MapOfThirtyEntries();
    const String key("Item17");
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.Find(key).Value());
    }
}
BENCHMARK(BM_MapFindOfShortKeyInConstMap);

}
