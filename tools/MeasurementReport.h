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
    // Of reflectance: the instrument's physical filter and the ISO 13655 measurement condition it
    // makes, M0 without a UV-cut filter and M2 with one; empty where neither applies.
    std::string filter;
    std::string measurementCondition;
};

}
