#pragma once
// Sets the colorimetric options on the module and reads the samples of the last measurement with
// their colour values.

#include <cstdint>
#include <string>
#include <vector>

#include "tools/Arguments.h"
#include "tools/ColourOptions.h"
#include "tools/MeasurementReport.h"

namespace OrbelCli {

class MeasurementReader {
public:
    // A reading command's own options followed by the paper white, the colour options and the
    // output and prompt options.
    static std::vector<OptionSpec> Options(std::vector<OptionSpec> own);
    static ColourOptions FromArguments(const Arguments& arguments);

    explicit MeasurementReader(ColourOptions options);
    void ApplyOptions() const;
    // names: the ids of the samples in order; samples beyond them are numbered from 1.
    // reflectance: also CIELab and, when the module has a paper white, densities.
    MeasurementReport Read(const std::vector<std::string>& names, bool reflectance) const;

private:
    Sample ReadSample(int32_t index, const std::string& id, bool reflectance) const;
    Triple ReadIn(const std::string& colourSpace, int32_t index) const;
    std::string FinalColourSpace() const;

    ColourOptions options;
};

}
