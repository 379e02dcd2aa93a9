#include "tests/support/ProgramRunner.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace OrbelTest {

namespace {

// This process's environment with `name` set to `value`. The child gets it whole from
// posix_spawn: a test process has threads, so nothing may run between fork and exec.
std::vector<std::string> EnvironmentWith(const std::string& name, const std::string& value)
{
    const std::string prefix = name + "=";
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (std::string(*entry).rfind(prefix, 0) != 0) {
            environment.emplace_back(*entry);
        }
    }
    environment.push_back(prefix + value);
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

void Drain(int outFd, int errFd, ProgramResult& result)
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
            (i == 0 ? result.out : result.err).append(buffer, static_cast<std::size_t>(got));
        }
    }
}

}

ProgramResult ProgramRunner::Run(const std::string& program, const std::vector<std::string>& args,
    const std::string& environmentName, const std::string& environmentValue)
{
    std::vector<std::string> argv{program};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<std::string> environment = EnvironmentWith(environmentName, environmentValue);
    ProgramResult result;
    int outPipe[2];
    int errPipe[2];
    if (::pipe2(outPipe, O_CLOEXEC) != 0) {
        return result;
    }
    if (::pipe2(errPipe, O_CLOEXEC) != 0) {
        ::close(outPipe[0]);
        ::close(outPipe[1]);
        return result;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], STDERR_FILENO);
    pid_t child = -1;
    const int spawned =
        ::posix_spawn(&child, program.c_str(), &actions, nullptr, Pointers(argv).data(), Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    if (spawned == 0) {
        // A started instrument keeps no descriptor of ours: its standard streams go to /dev/null.
        Drain(outPipe[0], errPipe[0], result);
        int status = 0;
        ::waitpid(child, &status, 0);
        result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    ::close(outPipe[0]);
    ::close(errPipe[0]);
    return result;
}

bool ProgramRunner::ProcessAlive(long processId)
{
    std::ifstream stat("/proc/" + std::to_string(processId) + "/stat");
    std::string pid;
    std::string name;
    std::string state;
    return static_cast<bool>(stat >> pid >> name >> state) && state != "Z" && state != "X";
}

}
