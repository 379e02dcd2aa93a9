#include "tools/DecimalText.h"

#include <charconv>
#include <cmath>

namespace OrbelCli {

std::string DecimalText::Format(double value, int decimals)
{
    if (!std::isfinite(value)) {
        return "nan";
    }
    if (value == 0.0) {
        value = 0.0; // no "-0.000"
    }
    char buffer[64];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    std::string text(buffer, written.ptr);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') {
        text.erase(0, 1);
    }
    return text;
}

std::string DecimalText::Shortest(float value)
{
    if (!std::isfinite(value)) {
        return "nan";
    }
    char buffer[32];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, written.ptr);
}

std::optional<double> DecimalText::Parse(const std::string& text)
{
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<long> DecimalText::ParseWhole(const std::string& text)
{
    long value = 0;
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (text.empty() || read.ec != std::errc() || read.ptr != end) {
        return std::nullopt;
    }
    return value;
}

}
