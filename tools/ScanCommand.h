#pragma once
// orbel scan: a strip of patches, drawn across with the instrument.

#include "tools/Command.h"

namespace OrbelCli {

class ScanCommand : public Command {
public:
    std::string Name() const override { return "scan"; }
    std::string Brief() const override { return "scan a strip of patches, with or without recognition"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel scan [--recognition] [--count N] [options]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;
};

}
