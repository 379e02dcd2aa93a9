#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "driver/ScaledTimeBase.h"
#include "driver/TimeBase.h"
#include "include/orbel.h"

namespace {

// A virtual instrument at time scale 0 in a directory of its own, for the life of the program.
// The directories are named before the first exported call, which is what finds them.
class ApiBenchInstrument {
public:
    ApiBenchInstrument()
        : directory(std::filesystem::temp_directory_path() / ("orbel-api-bench-" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(directory / "locks");
        ::setenv("ORBEL_SIM_DIR", directory.c_str(), 1);
        ::setenv("ORBEL_LOCK_DIR", (directory / "locks").c_str(), 1);
        DeviceDriver::TimeBase::Replace(Utilities::SmartPointer<DeviceDriver::TimeBase>(
            new DeviceDriver::ScaledTimeBase(DeviceDriver::TimeBase::System(), 1000.0)));
        started = Sim("start --noise off --time-scale 0 > /dev/null") == 0;
    }

    ~ApiBenchInstrument()
    {
        Sim("stop > /dev/null");
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }

    bool Started() const { return started; }

    bool Place(const std::string& target) const { return Sim("place " + target + " > /dev/null") == 0; }

private:
    int Sim(const std::string& arguments) const
    {
        const std::string command = "ORBEL_SIM_DIR=" + directory.string() + " " + ORBEL_SIM_BINARY + " " + arguments;
        return std::system(command.c_str());
    }

    std::filesystem::path directory;
    bool started = false;
};

ApiBenchInstrument& Instrument()
{
    static ApiBenchInstrument instrument;
    return instrument;
}

// A calibrated instrument in mode 3 with one sample held.
bool PrepareReflectance()
{
    return Instrument().Started() && OB_IsConnected() == OB_NoError &&
           OB_SetOption("MeasurementMode", "SingleReflectance") == OB_NoError && Instrument().Place("tile") &&
           OB_Calibrate() == OB_NoError && Instrument().Place("sample:tcs01") && OB_TriggerMeasurement() == OB_NoError;
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
