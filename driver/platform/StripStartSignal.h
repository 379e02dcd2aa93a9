#pragma once

namespace DeviceDriver {

// Tells the user at the start of a strip that the hand may now draw: the bell of the controlling
// terminal, where the process has one.
class StripStartSignal {
public:
    static void Sound();
};

}
