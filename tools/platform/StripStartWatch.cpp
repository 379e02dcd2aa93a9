#include "tools/platform/StripStartWatch.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "driver/platform/StripStartSignal.h"

namespace OrbelCli {

namespace {

void ClosePair(int (&pair)[2])
{
    for (int& descriptor : pair) {
        if (descriptor >= 0) {
            ::close(descriptor);
            descriptor = -1;
        }
    }
}

}

StripStartWatch::StripStartWatch(std::ostream& messages) : messages(messages)
{
    // Without the pipes the strip runs all the same, with the bell alone.
    if (::pipe2(signal, O_CLOEXEC | O_NONBLOCK) != 0 || ::pipe2(stop, O_CLOEXEC) != 0) {
        ClosePair(signal);
        return;
    }
    ::setenv(DeviceDriver::StripStartSignal::WatcherVariable, std::to_string(signal[1]).c_str(), 1);
    watcher = std::thread(&StripStartWatch::Watch, this);
}

StripStartWatch::~StripStartWatch()
{
    if (watcher.joinable()) {
        const char stopNow = 0;
        [[maybe_unused]] const ssize_t written = ::write(stop[1], &stopNow, 1);
        watcher.join();
    }
    ::unsetenv(DeviceDriver::StripStartSignal::WatcherVariable);
    ClosePair(signal);
    ClosePair(stop);
}

void StripStartWatch::Watch()
{
    pollfd watched[2] = {{signal[0], POLLIN, 0}, {stop[0], POLLIN, 0}};
    while (true) {
        if (::poll(watched, 2, -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            return;
        }
        if (!ShowArrived() || (watched[1].revents & POLLIN) != 0) {
            return;
        }
    }
}

bool StripStartWatch::ShowArrived()
{
    char arrived[64];
    ssize_t count = 0;
    while ((count = ::read(signal[0], arrived, sizeof arrived)) > 0) {
        for (ssize_t i = 0; i < count; ++i) {
            if (arrived[i] == '\n') {
                messages << DeviceDriver::StripStartSignal::Line << std::flush;
            }
        }
    }
    return count != 0;
}

}
