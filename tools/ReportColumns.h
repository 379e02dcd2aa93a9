#pragma once
// The fields of a report as columns of a data exchange file: names and each sample's values.

#include <string>
#include <vector>

#include "tools/MeasurementReport.h"

namespace OrbelCli {

class ReportColumns {
public:
    explicit ReportColumns(const MeasurementReport& report);

    // The three field names of the values in a colour space of the module, as CIELCh_1 to _3.
    static std::vector<std::string> ChannelFields(const std::string& colourSpace);

    const std::vector<std::string>& Names() const { return names; }
    std::vector<std::string> Values(const Sample& sample) const;

private:
    bool hasXyz;
    bool hasLab;
    bool hasDensities;
    bool hasChosen;
    std::vector<std::string> names;
};

}
