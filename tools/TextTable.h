#pragma once
// A table for people: columns padded to their widest cell, numbers right-aligned.

#include <ostream>
#include <string>
#include <vector>

namespace OrbelCli {

class TextTable {
public:
    explicit TextTable(std::vector<std::string> header);
    void AddRow(std::vector<std::string> cells);
    void Write(std::ostream& out, const std::string& indent = "  ") const;

private:
    std::vector<std::size_t> Widths() const;
    static bool LooksNumeric(const std::string& cell);

    std::vector<std::string> header;
    std::vector<std::vector<std::string>> rows;
};

}
