#pragma once
// Cyan, magenta, yellow and black (visual) densities, as the instrument's filters give them, and
// the filter that the automatic choice takes.

#include <array>
#include <string>

namespace OrbelCli {

struct Densities {
    std::array<float, 4> values{};
    std::string autoFilter;
};

}
