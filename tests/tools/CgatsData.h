#pragma once
// CGATS text as the tests read it back: the keywords of the header, the field names, the sets.

#include <map>
#include <string>
#include <vector>

namespace OrbelCliTest {

struct CgatsData {
    std::string signature;
    std::map<std::string, std::string> keywords;
    std::vector<std::string> fields;
    std::vector<std::vector<std::string>> sets;

    // The value of a field in a set, as a number; throws if it isn't one.
    double Number(std::size_t set, const std::string& field) const;
    const std::string& Text(std::size_t set, const std::string& field) const;
};

}
