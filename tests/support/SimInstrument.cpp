#include "tests/support/SimInstrument.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <random>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

extern char** environ;

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

// This process's environment with the instrument directory set to `directory`.
std::vector<std::string> EnvironmentFor(const std::string& directory)
{
    const std::string prefix = std::string(DirectoryVariable) + "=";
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (std::string(*entry).rfind(prefix, 0) != 0) {
            environment.emplace_back(*entry);
        }
    }
    environment.push_back(prefix + directory);
    return environment;
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

void Drain(int outFd, int errFd, SimOutput& output)
{
    pollfd entries[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    int open = 2;
    char buffer[4096];
    while (open > 0) {
        if (::poll(entries, 2, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        for (int i = 0; i < 2; ++i) {
            if (entries[i].fd < 0 || entries[i].revents == 0) {
                continue;
            }
            const ssize_t got = ::read(entries[i].fd, buffer, sizeof buffer);
            if (got <= 0) {
                entries[i].fd = -1;
                --open;
                continue;
            }
            (i == 0 ? output.out : output.err).append(buffer, static_cast<std::size_t>(got));
        }
    }
}

}

SimInstrument::SimInstrument(std::uint32_t serial) : directory(NewDirectory()), ownsDirectory(true), serial(serial)
{
    Start();
}

SimInstrument::SimInstrument(const SimInstrument& neighbour, std::uint32_t serial)
    : directory(neighbour.directory), ownsDirectory(false), serial(serial)
{
    Start();
}

SimInstrument::~SimInstrument()
{
    Run({"stop"});
    if (ownsDirectory) {
        std::error_code ignored;
        std::filesystem::remove_all(directory, ignored);
    }
}

void SimInstrument::Start()
{
    const SimOutput started = Run({"start", "--noise", "off", "--time-scale", "0"});
    if (started.exitCode != 0) {
        throw std::runtime_error("orbel-sim start failed: " + started.err);
    }
}

SimOutput SimInstrument::Run(std::vector<std::string> args) const
{
    args.insert(args.begin(), ORBEL_SIM_BINARY);
    args.push_back("--serial");
    args.push_back(std::to_string(serial));
    std::vector<std::string> environment = EnvironmentFor(directory);
    SimOutput output;
    int outPipe[2];
    int errPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0) {
        return output;
    }
    if (::pipe2(errPipe, O_CLOEXEC) != 0) {
        ::close(outPipe[0]);
        ::close(outPipe[1]);
        return output;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    pid_t child = -1;
    const int spawned =
        ::posix_spawn(&child, ORBEL_SIM_BINARY, &actions, nullptr, Pointers(args).data(), Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (spawned == 0) {
        Drain(outPipe[0], errPipe[0], output);
        int status = 0;
        ::waitpid(child, &status, 0);
        output.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    ::close(outPipe[0]);
    ::close(errPipe[0]);
    return output;
}

void SimInstrument::Command(const std::vector<std::string>& args) const
{
    const SimOutput output = Run(args);
    ASSERT_EQ(output.exitCode, 0) << "orbel-sim " << args.front() << ": " << output.err;
}

}
