#include "driver/platform/StripStartSignal.h"

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace DeviceDriver {

namespace {

void RingTerminalBell()
{
    const int terminal = ::open("/dev/tty", O_WRONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (terminal < 0) {
        return;
    }
    const char bell = '\a';
    [[maybe_unused]] const ssize_t written = ::write(terminal, &bell, 1);
    ::close(terminal);
}

// A variable inherited by a program that doesn't watch may name a descriptor that is something
// else there: only a pipe is written to.
int WatcherPipe()
{
    const char* named = std::getenv(StripStartSignal::WatcherVariable);
    if (named == nullptr || *named == '\0') {
        return -1;
    }
    char* end = nullptr;
    const long descriptor = std::strtol(named, &end, 10);
    struct stat status { };
    if (*end != '\0' || descriptor < 0 || descriptor > std::numeric_limits<int>::max() ||
        ::fstat(static_cast<int>(descriptor), &status) != 0 || !S_ISFIFO(status.st_mode)) {
        return -1;
    }
    return static_cast<int>(descriptor);
}

}

void StripStartSignal::Sound()
{
    RingTerminalBell();
    if (const int watcher = WatcherPipe(); watcher >= 0) {
        [[maybe_unused]] const ssize_t written = ::write(watcher, Line, std::strlen(Line));
    }
}

}
