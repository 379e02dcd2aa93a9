#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/BenchInstrument.h"
#include "include/orbel.h"

namespace {

OrbelBench::BenchInstrument& Instrument()
{
    static OrbelBench::BenchInstrument instrument("orbel-api-bench");
    return instrument;
}

bool Place(const std::string& target)
{
    return Instrument().Command("place " + target);
}

// A calibrated instrument in mode 3 with one sample held.
bool PrepareReflectance()
{
    return Instrument().Started() && OB_IsConnected() == OB_NoError &&
        OB_SetOption("MeasurementMode", "SingleReflectance") == OB_NoError && Place("tile") &&
        OB_Calibrate() == OB_NoError && Place("sample:tcs01") && OB_TriggerMeasurement() == OB_NoError;
}

// The first call of a process creates the device object, takes the process lock and opens the
// instrument. Each iteration is a new process, forked before this one made its first call, and
// times that first call in it.
void BM_FirstIsConnected(benchmark::State& state)
{
    if (!Instrument().Started()) {
        state.SkipWithError("orbel-sim did not start");
        return;
    }
    for (auto _ : state) {
        int answer[2];
        if (::pipe(answer) != 0) {
            state.SkipWithError("no pipe");
            return;
        }
        const pid_t child = ::fork();
        if (child == 0) {
            const auto begin = std::chrono::steady_clock::now();
            const int32_t code = OB_IsConnected();
            const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
            const double report[2] = {seconds, static_cast<double>(code)};
            const bool written = ::write(answer[1], report, sizeof report) == static_cast<ssize_t>(sizeof report);
            ::_exit(written ? 0 : 1);
        }
        ::close(answer[1]);
        double report[2] = {0.0, -1.0};
        const bool read = ::read(answer[0], report, sizeof report) == static_cast<ssize_t>(sizeof report);
        ::close(answer[0]);
        ::waitpid(child, nullptr, 0);
        if (!read || static_cast<int32_t>(report[1]) != OB_NoError) {
            state.SkipWithError("the first OB_IsConnected did not answer 0");
            return;
        }
        state.SetIterationTime(report[0]);
    }
}
BENCHMARK(BM_FirstIsConnected)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

// Colour values are computed anew from the held spectrum at each call.
void BM_GetTriStimulusOnAHeldSample(benchmark::State& state)
{
    if (!PrepareReflectance()) {
        state.SkipWithError(OB_GetDeviceInfo("LastError"));
        return;
    }
    float lab[3];
    for (auto _ : state) {
        benchmark::DoNotOptimize(OB_GetTriStimulus(lab, 0));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetTriStimulusOnAHeldSample);

// The CPU column is what the host spends on one trigger; the instrument's time and the waits
// of the driver pass asleep.
void BM_TriggerMeasurementHostCpu(benchmark::State& state)
{
    if (!PrepareReflectance()) {
        state.SkipWithError(OB_GetDeviceInfo("LastError"));
        return;
    }
    for (auto _ : state) {
        if (OB_TriggerMeasurement() != OB_NoError) {
            state.SkipWithError(OB_GetDeviceInfo("LastError"));
            return;
        }
    }
}
BENCHMARK(BM_TriggerMeasurementHostCpu)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

}
