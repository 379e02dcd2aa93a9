#pragma once
// What the program learned of one measured sample. Optional parts stay empty when the module
// couldn't give them (densities without a paper white, for example).

#include <optional>
#include <string>

#include "tools/Densities.h"
#include "tools/Spectrum.h"

namespace OrbelCli {

struct Sample {
    std::string id;
    Spectrum spectrum{};
    std::optional<Triple> xyz;
    std::optional<Triple> lab;
    std::optional<Densities> densities;
    // The values in the colour space that the user chose, when it is neither CIELab nor CIEXYZ.
    std::optional<Triple> chosen;
};

}
