#include "sim/SimLog.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <mutex>

namespace OrbelSim {

namespace {

std::atomic<bool> verboseLog{false};
std::mutex logMutex;

} // namespace

void SimLog::SetVerbose(bool verbose)
{
    verboseLog = verbose;
}

bool SimLog::Verbose()
{
    return verboseLog;
}

void SimLog::Write(const std::string& line)
{
    if (!verboseLog) {
        return;
    }
    const auto now = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    std::lock_guard<std::mutex> lock(logMutex);
    std::fprintf(stderr, "[%.3f] %s\n", now, line.c_str());
    std::fflush(stderr);
}

} // namespace OrbelSim
