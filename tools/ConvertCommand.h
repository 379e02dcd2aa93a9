#pragma once
// orbel convert: spectra from a file to their colour values, density and ΔE, without an instrument.
// The spectra stream through in blocks, so that a file of any length takes the same memory.

#include "tools/Command.h"

namespace OrbelCli {

class ConvertCommand : public Command {
public:
    std::string Name() const override { return "convert"; }
    std::string Brief() const override { return "colour values of spectra in a CGATS, CSV or JSON file"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel convert --input FILE [--reference FILE] [options]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;
};

}
