#pragma once
// One subcommand of the program.

#include <ostream>
#include <string>
#include <vector>

#include "tools/Arguments.h"

namespace OrbelCli {

class Command {
public:
    virtual ~Command() = default;
    virtual std::string Name() const = 0;
    // One line for the list of commands.
    virtual std::string Brief() const = 0;
    virtual std::string Summary() const = 0;
    virtual std::string Usage() const = 0;
    virtual std::string Examples() const = 0;
    virtual std::vector<OptionSpec> Options() const = 0;
    // out: the results; messages: prompts and remarks for the person. Answers the exit status.
    virtual int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) = 0;

    // The full --help text, built from the parts above.
    std::string Help() const;
};

}
