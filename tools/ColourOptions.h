#pragma once
// The colorimetric options that a user may give; what isn't given stays as the module has it.

#include <optional>
#include <string>

namespace OrbelCli {

struct ColourOptions {
    std::optional<std::string> illuminant;
    std::optional<std::string> observer;
    std::optional<std::string> colourSpace;
    std::optional<std::string> whiteBase;
    std::optional<std::string> densityStandard;
};

}
