#pragma once
// Runs a program with one environment variable set and collects its exit code and output.

#include <string>
#include <vector>

namespace OrbelTest {

struct ProgramResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

class ProgramRunner {
public:
    static ProgramResult Run(const std::string& program, const std::vector<std::string>& args,
        const std::string& environmentName, const std::string& environmentValue);
    static bool ProcessAlive(long processId);
};

}
