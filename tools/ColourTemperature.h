#pragma once
// The correlated colour temperature of a light from its tristimulus values (McCamy's cubic in the
// chromaticity x, y: good to a few kelvin between about 2000 K and 12500 K).

#include <optional>

#include "tools/Sample.h"

namespace OrbelCli {

class ColourTemperature {
public:
    // Empty for a light without any signal.
    static std::optional<double> FromXyz(const Triple& xyz);
};

}
