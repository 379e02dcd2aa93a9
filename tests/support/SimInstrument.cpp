#include "tests/support/SimInstrument.h"

#include <atomic>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

namespace OrbelTest {

namespace {

const char* const DirectoryVariable = "ORBEL_SIM_DIR";

std::string NewDirectory()
{
    static std::atomic<int> counter{0};
    std::random_device random;
    const auto path = std::filesystem::temp_directory_path() /
        ("orbel-driver-test-" + std::to_string(random()) + "-" + std::to_string(counter++));
    std::filesystem::create_directories(path);
    return path.string();
}

}

SimInstrument::SimInstrument(std::uint32_t serial, std::string timeScale)
    : directory(NewDirectory()), ownsDirectory(true), serial(serial), timeScale(std::move(timeScale))
{
    Start();
}

SimInstrument::SimInstrument(const SimInstrument& neighbour, std::uint32_t serial)
    : directory(neighbour.directory), ownsDirectory(false), serial(serial), timeScale(neighbour.timeScale)
{
    Start();
}

SimInstrument::SimInstrument(std::string directory, std::uint32_t serial)
    : directory(std::move(directory)), ownsDirectory(false), started(false), serial(serial)
{
}

SimInstrument::~SimInstrument()
{
    if (started) {
        Run({"stop"});
    }
    if (ownsDirectory) {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
}

void SimInstrument::Start()
{
    const ProgramResult started = Run({"start", "--noise", "off", "--time-scale", timeScale});
    if (started.exitCode != 0) {
        throw std::runtime_error("orbel-sim start failed: " + started.err);
    }
}

ProgramResult SimInstrument::Run(std::vector<std::string> args) const
{
    args.push_back("--serial");
    args.push_back(std::to_string(serial));
    return ProgramRunner::Run(ORBEL_SIM_BINARY, args, DirectoryVariable, directory);
}

void SimInstrument::Command(const std::vector<std::string>& args) const
{
    const ProgramResult output = Run(args);
    ASSERT_EQ(output.exitCode, 0) << "orbel-sim " << args.front() << ": " << output.err;
}

}
