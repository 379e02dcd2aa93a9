#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "tools/Application.h"

namespace {

// A CGATS file of measured-looking spectra, written once per size.
std::string SpectraFile(std::size_t count)
{
    const std::string path = (std::filesystem::temp_directory_path() /
        ("orbel-convert-bench-" + std::to_string(::getpid()) + "-" + std::to_string(count) + ".cgats"))
                                 .string();
    std::ofstream file(path);
    file << "CGATS.17\nBEGIN_DATA_FORMAT\nSAMPLE_NAME";
    for (int nm = 380; nm <= 730; nm += 10) {
        file << " SPEC_" << nm;
    }
    file << "\nEND_DATA_FORMAT\nBEGIN_DATA\n";
    std::mt19937 generator(23);
    std::uniform_int_distribution<int> reflectance(0, 9999);
    for (std::size_t i = 0; i < count; ++i) {
        file << "\"P" << i << '"';
        for (int point = 0; point < 36; ++point) {
            file << " 0." << reflectance(generator);
        }
        file << '\n';
    }
    file << "END_DATA\n";
    return path;
}

long PeakKilobytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// orbel convert on a file of N spectra, CGATS in, CSV with ΔE out. The peak memory of the
// process must not grow with N: the spectra stream through in blocks.
void BM_ConvertCgatsFile(benchmark::State& state)
{
    const std::size_t count = static_cast<std::size_t>(state.range(0));
    const std::string path = SpectraFile(count);
    const long peakBefore = PeakKilobytes();
    for (auto _ : state) {
        std::ostringstream messages;
        std::ofstream out("/dev/null");
        const int status = OrbelCli::Application().Run(
            {"convert", "--input", path, "--reference", path, "--delta-e", "94"}, out, messages);
        if (status != 0) {
            state.SkipWithError(messages.str().c_str());
        }
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * count));
    state.counters["peak_rss_growth_kB"] = static_cast<double>(PeakKilobytes() - peakBefore);
    std::filesystem::remove(path);
}
BENCHMARK(BM_ConvertCgatsFile)->Arg(10000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

}
