#pragma once
// Shows "draw now" when the module signals the start of a strip: it hands the module the writing
// end of a pipe through the environment and reads the other end while it lives.

#include <ostream>
#include <thread>

namespace OrbelCli {

class StripStartWatch {
public:
    explicit StripStartWatch(std::ostream& messages);
    // Shows what has arrived until now, then stops watching.
    ~StripStartWatch();
    StripStartWatch(const StripStartWatch&) = delete;
    StripStartWatch& operator=(const StripStartWatch&) = delete;

private:
    void Watch();
    // False once the writing end is gone.
    bool ShowArrived();

    std::ostream& messages;
    int signal[2] = {-1, -1};
    int stop[2] = {-1, -1};
    std::thread watcher;
};

}
