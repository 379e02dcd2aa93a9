#pragma once
// Runs another program to its end, its standard output discarded.

#include <string>
#include <vector>

namespace OrbelCli {

class ChildProcess {
public:
    // The exit status of the program; -1 if it couldn't be started or didn't end normally.
    static int Run(const std::string& program, const std::vector<std::string>& arguments);
};

}
