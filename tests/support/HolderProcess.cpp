#include "tests/support/HolderProcess.h"

#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

namespace {

constexpr int silenceLimitMs = 10000;

}

// The child only rearranges descriptors and executes: after a fork in a process with threads,
// nothing else is safe.
HolderProcess::HolderProcess(const std::string& lockName, unsigned long timeoutMs)
    : processId(-1), toHolder(-1), fromHolder(-1)
{
    const std::string timeout = std::to_string(timeoutMs);
    std::vector<char*> arguments{const_cast<char*>(ORBEL_MUTEX_HOLDER), const_cast<char*>(lockName.c_str()),
        const_cast<char*>(timeout.c_str()), nullptr};
    int input[2];
    int output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) {
        return;
    }
    processId = ::fork();
    if (processId == 0) {
        ::dup2(input[0], STDIN_FILENO);
        ::dup2(output[1], STDOUT_FILENO);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    ::close(input[0]);
    ::close(output[1]);
    toHolder = input[1];
    fromHolder = output[0];
}

HolderProcess::~HolderProcess()
{
    Kill();
    ::close(toHolder);
    ::close(fromHolder);
}

std::string HolderProcess::ReadLine()
{
    for (;;) {
        const auto end = pending.find('\n');
        if (end != std::string::npos) {
            std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            return line;
        }
        pollfd entry{fromHolder, POLLIN, 0};
        if (::poll(&entry, 1, silenceLimitMs) <= 0) {
            return "timed out";
        }
        char buffer[256];
        const ssize_t got = ::read(fromHolder, buffer, sizeof buffer);
        if (got <= 0) {
            return "ended";
        }
        pending.append(buffer, static_cast<std::size_t>(got));
    }
}

void HolderProcess::Release()
{
    const char line[] = "release\n";
    (void)!::write(toHolder, line, sizeof line - 1);
}

void HolderProcess::Kill()
{
    if (processId > 0) {
        ::kill(processId, SIGKILL);
        Reap();
    }
}

void HolderProcess::Reap()
{
    ::waitpid(processId, nullptr, 0);
    processId = -1;
}
