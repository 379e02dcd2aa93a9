#include "driver/platform/StripStartSignal.h"

#include <fcntl.h>
#include <unistd.h>

namespace DeviceDriver {

void StripStartSignal::Sound()
{
    const int terminal = ::open("/dev/tty", O_WRONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (terminal < 0) {
        return;
    }
    const char bell = '\a';
    [[maybe_unused]] const ssize_t written = ::write(terminal, &bell, 1);
    ::close(terminal);
}

}
