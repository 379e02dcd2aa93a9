#pragma once
// Numbers as text with "." as the decimal point, whatever the locale of the process: files written
// here are read on other machines.

#include <optional>
#include <string>

namespace OrbelCli {

class DecimalText {
public:
    static std::string Format(double value, int decimals);
    // The shortest text that reads back as the same float.
    static std::string Shortest(float value);
    static std::optional<double> Parse(const std::string& text);
    static std::optional<long> ParseWhole(const std::string& text);
};

}
