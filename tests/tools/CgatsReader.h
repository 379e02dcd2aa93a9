#pragma once
// Reads CGATS.17 text back for the tests: the keywords of the header, the field names and the
// sets. Counts that disagree with the data throw.

#include <string>
#include <vector>

#include "tests/tools/CgatsData.h"

namespace OrbelCliTest {

class CgatsReader {
public:
    static CgatsData Read(const std::string& text);

private:
    static std::vector<std::string> Words(const std::string& line);
};

}
