#pragma once
// The words after the subcommand: options (--name, --name VALUE or --name=VALUE) and the rest.

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/OptionSpec.h"

namespace OrbelCli {

class Arguments {
public:
    // Throws a usage error for an option that the subcommand doesn't know or one that lacks its value.
    Arguments(const std::string& command, const std::vector<std::string>& words, const std::vector<OptionSpec>& known);

    bool Has(const std::string& name) const;
    std::optional<std::string> Get(const std::string& name) const;
    std::string Value(const std::string& name, const std::string& fallback) const;
    // A whole number within bounds; a usage error otherwise.
    long Whole(const std::string& name, long fallback, long lowest, long highest) const;
    // One of the words given; a usage error otherwise.
    std::string Choice(
        const std::string& name, const std::string& fallback, const std::vector<std::string>& words) const;
    const std::vector<std::string>& Positional() const { return positional; }

private:
    std::string command;
    std::map<std::string, std::string> options;
    std::vector<std::string> positional;
};

}
