#pragma once
// orbel measure: one measurement of reflectance, emission or ambient light.

#include "tools/Command.h"
#include "tools/MeasurementReport.h"

namespace OrbelCli {

class MeasureCommand : public Command {
public:
    std::string Name() const override { return "measure"; }
    std::string Brief() const override { return "measure reflectance, emission (a display) or ambient light"; }
    std::string Summary() const override;
    std::string Usage() const override { return "orbel measure [--mode reflectance|emission|ambient] [options]"; }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;
};

}
