#include "sim/platform/Daemon.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace OrbelSim {

namespace {

constexpr int readyWaitMs = 10000;
volatile sig_atomic_t stopWakeFd = -1;

void WakeOnSignal(int)
{
    const char byte = 1;
    if (stopWakeFd >= 0) {
        [[maybe_unused]] const ssize_t written = ::write(stopWakeFd, &byte, 1);
    }
}

void RedirectStandardStreams(const std::string& logFile)
{
    const int devNull = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    const int errorTarget =
        logFile.empty() ? devNull : ::open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    ::dup2(devNull, STDIN_FILENO);
    ::dup2(devNull, STDOUT_FILENO);
    ::dup2(errorTarget >= 0 ? errorTarget : devNull, STDERR_FILENO);
}

std::string ReadMessage(int fd)
{
    std::string message;
    char buffer[512];
    pollfd entry{fd, POLLIN, 0};
    while (::poll(&entry, 1, readyWaitMs) > 0) {
        const ssize_t got = ::read(fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        message.append(buffer, static_cast<std::size_t>(got));
    }
    return message;
}

[[noreturn]] void RunDetached(int readyFd, const std::string& logFile, const Daemon::Service& service)
{
    ::setsid();
    if (::fork() != 0) {
        ::_exit(0);
    }
    if (::chdir("/") != 0) {
        ::_exit(1);
    }
    RedirectStandardStreams(logFile);
    bool told = false;
    const Daemon::ReadySignal ready = [&](bool ok, const std::string& text) {
        const std::string message = (ok ? "ok\t" : "error\t") + text;
        [[maybe_unused]] const ssize_t written = ::write(readyFd, message.data(), message.size());
        ::close(readyFd);
        told = true;
    };
    const int code = service(ready);
    if (!told) {
        ready(false, "the instrument ended before it was ready");
    }
    std::exit(code);
}

} // namespace

bool Daemon::Detach(const std::string& logFile, const Service& service, std::string& message)
{
    int pipeFds[2];
    if (::pipe2(pipeFds, O_CLOEXEC) != 0) {
        message = "unable to make a pipe";
        return false;
    }
    const pid_t child = ::fork();
    if (child < 0) {
        message = "unable to start a process";
        ::close(pipeFds[0]);
        ::close(pipeFds[1]);
        return false;
    }
    if (child == 0) {
        ::close(pipeFds[0]);
        RunDetached(pipeFds[1], logFile, service);
    }
    ::close(pipeFds[1]);
    const std::string answer = ReadMessage(pipeFds[0]);
    ::close(pipeFds[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    const bool ok = answer.rfind("ok\t", 0) == 0;
    const std::size_t tab = answer.find('\t');
    message = tab == std::string::npos ? "the instrument did not start" : answer.substr(tab + 1);
    return ok;
}

void Daemon::InstallStopSignals(int wakeFd)
{
    stopWakeFd = wakeFd;
    struct sigaction action { };
    action.sa_handler = WakeOnSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
    struct sigaction ignore { };
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    ::sigaction(SIGPIPE, &ignore, nullptr);
}

namespace {

// A process that has ended but waits for its parent to collect it counts as gone.
bool Alive(long processId)
{
    std::ifstream stat("/proc/" + std::to_string(processId) + "/stat");
    std::string pid;
    std::string name;
    std::string state;
    if (!(stat >> pid >> name >> state)) {
        return false;
    }
    return state != "Z" && state != "X";
}

} // namespace

bool Daemon::WaitForExit(long processId, int milliseconds)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (Alive(processId)) {
        if (std::chrono::steady_clock::now() >= deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

long Daemon::ProcessId()
{
    return static_cast<long>(::getpid());
}

} // namespace OrbelSim
