#include "tests/tools/CgatsData.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

namespace OrbelCliTest {

const std::string& CgatsData::Text(std::size_t set, const std::string& field) const
{
    const auto found = std::find(fields.begin(), fields.end(), field);
    if (found == fields.end()) {
        throw std::runtime_error("no field " + field);
    }
    return sets.at(set).at(static_cast<std::size_t>(found - fields.begin()));
}

double CgatsData::Number(std::size_t set, const std::string& field) const
{
    const std::string& text = Text(set, field);
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0') {
        throw std::runtime_error(field + " is not a number: " + text);
    }
    return value;
}

}
