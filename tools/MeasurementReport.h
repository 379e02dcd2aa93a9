#pragma once
// One measurement as the formatters see it: what was measured, under which options, its samples,
// and further named values (luminance, colour temperature).

#include <string>
#include <utility>
#include <vector>

#include "tools/Sample.h"

namespace OrbelCli {

struct MeasurementReport {
    std::string mode;
    std::string illuminant;
    std::string observer;
    std::string colourSpace;
    std::vector<Sample> samples;
    std::vector<std::pair<std::string, std::string>> notes;
};

}
