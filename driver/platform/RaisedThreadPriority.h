#pragma once

#include <optional>

namespace DeviceDriver {

// Raises the calling thread one step above its priority for the life of the object, where the
// system lets the process do so, and puts the former priority back. On Linux an unprivileged
// process may not lower its nice value (RLIMIT_NICE), so there the thread mostly keeps its own.
class RaisedThreadPriority {
public:
    RaisedThreadPriority();
    ~RaisedThreadPriority();
    RaisedThreadPriority(const RaisedThreadPriority&) = delete;
    RaisedThreadPriority& operator=(const RaisedThreadPriority&) = delete;

    bool IsRaised() const { return former.has_value(); }

private:
    std::optional<int> former;
};

}
