#pragma once

namespace DeviceDriver {

// Tells the user at the start of a strip that the hand may now draw: the bell of the controlling
// terminal, where the process has one, and a line to the program that watches for it.
class StripStartSignal {
public:
    // The environment variable through which a program (orbel scan) names a pipe, open for writing
    // and not blocking, that gets the line `Line` at each start.
    static constexpr const char* WatcherVariable = "ORBEL_STRIP_SIGNAL_FD";
    static constexpr const char* Line = "draw now\n";

    static void Sound();
};

}
