#pragma once
// An option of a subcommand, as the parser and the help text need it.

#include <string>

namespace OrbelCli {

struct OptionSpec {
    std::string name;
    bool takesValue;
    std::string valueName;
    std::string description;
};

}
