#pragma once
// orbel substrate: the paper white that densities are measured against, measured or loaded.

#include "tools/Command.h"

namespace OrbelCli {

class SubstrateCommand : public Command {
public:
    std::string Name() const override { return "substrate"; }
    std::string Brief() const override { return "measure or load the paper white for densities"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel substrate [--output FILE | --load FILE] [options]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;
};

}
