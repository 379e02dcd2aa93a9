#pragma once
// orbel calibrate: calibration of one measurement mode, on the white tile.

#include "tools/Command.h"

namespace OrbelCli {

class CalibrateCommand : public Command {
public:
    std::string Name() const override { return "calibrate"; }
    std::string Brief() const override { return "calibrate on the white tile"; }
    std::string Summary() const override;
    std::string Usage() const override
    {
        return "orbel calibrate [--mode reflectance|scan|emission|ambient] [--no-wait]";
    }
    std::string Examples() const override;
    std::vector<OptionSpec> Options() const override;
    int Run(const Arguments& arguments, std::ostream& out, std::ostream& messages) override;

    // The module's name of a mode word of the command line.
    static std::string ModeName(const std::string& word);
};

}
