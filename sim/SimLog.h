#pragma once
// The verbose log of orbel-sim (--verbose): one line for each transfer, refusal and command, on
// standard error (in the background, <serial>.log beside the sockets).

#include <string>

namespace OrbelSim {

class SimLog {
public:
    static void SetVerbose(bool verbose);
    static bool Verbose();
    static void Write(const std::string& line);
};

} // namespace OrbelSim
