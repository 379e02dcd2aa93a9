#include "tools/ColourTemperature.h"

#include <cmath>

namespace OrbelCli {

std::optional<double> ColourTemperature::FromXyz(const Triple& xyz)
{
    const double sum = double(xyz[0]) + xyz[1] + xyz[2];
    if (!(sum > 0.0)) {
        return std::nullopt;
    }
    const double x = xyz[0] / sum;
    const double y = xyz[1] / sum;
    const double n = (x - 0.3320) / (0.1858 - y);
    return 449.0 * n * n * n + 3525.0 * n * n + 6823.3 * n + 5520.33;
}

}
