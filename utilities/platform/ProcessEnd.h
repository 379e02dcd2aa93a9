#pragma once

namespace Utilities {

// Work for the end of the process, such as closing the instrument. On Windows the module's exit
// work runs when the module is unloaded; at the end of the process the system has stopped every
// other thread by then, so work that waits for a thread would wait for ever: there it is left
// out, and the system frees what it held.
class ProcessEnd {
public:
    static void AtExit(void (*work)());
};

}
