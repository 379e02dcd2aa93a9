#pragma once
// A failure that ends the program: the exit status and what to tell the person.

#include <stdexcept>
#include <string>

namespace OrbelCli {

class CliError : public std::runtime_error {
public:
    // Exit status of a wrong command line, apart from the module's result codes 0 to 11.
    static constexpr int UsageStatus = 64;

    CliError(int exitStatus, const std::string& message);
    static CliError Usage(const std::string& message);

    int ExitStatus() const { return exitStatus; }

private:
    int exitStatus;
};

}
