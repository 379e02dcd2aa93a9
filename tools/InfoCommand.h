#pragma once
// orbel info: what the module and the instrument tell about themselves.

#include "tools/Command.h"

namespace OrbelCli {

class InfoCommand : public Command {
public:
    std::string Name() const override { return "info"; }
    std::string Brief() const override { return "the module version and what the instrument tells about itself"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel info [--devices] [--format table|csv|json]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;

    // The keys and their answers, in the order shown.
    static std::vector<std::pair<std::string, std::string>> Collect();
};

}
