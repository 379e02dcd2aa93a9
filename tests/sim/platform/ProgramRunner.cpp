#include "tests/sim/platform/ProgramRunner.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace OrbelSimTest {

namespace {

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

}  // namespace

ProgramResult ProgramRunner::Run(const std::string& program, const std::vector<std::string>& args,
                                 const std::string& environmentName, const std::string& environmentValue)
{
  int outPipe[2];
  int errPipe[2];
  ProgramResult result;
  if (::pipe(outPipe) != 0 || ::pipe(errPipe) != 0) {
    return result;
  }
  const pid_t child = ::fork();
  if (child == 0) {
    ::setenv(environmentName.c_str(), environmentValue.c_str(), 1);
    ::dup2(outPipe[1], STDOUT_FILENO);
    ::dup2(errPipe[1], STDERR_FILENO);
    ::close(outPipe[0]);
    ::close(errPipe[0]);
    ::close(outPipe[1]);
    ::close(errPipe[1]);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& arg : args) {
      argv.push_back(const_cast<char*>(arg.c_str()));
    }
    argv.push_back(nullptr);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
  }
  ::close(outPipe[1]);
  ::close(errPipe[1]);
  // The started instrument keeps no descriptor of ours: its standard streams go to /dev/null.
  Drain(outPipe[0], errPipe[0], result);
  ::close(outPipe[0]);
  ::close(errPipe[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
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

}  // namespace OrbelSimTest
