#include "utilities/ProfileText.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace Utilities {

namespace {

constexpr char blanks[] = " \t\r\v\f";

std::string_view Trimmed(std::string_view text)
{
    const std::string_view::size_type first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool EqualWithoutCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    });
}

// The name of a "[section]" line; nothing for any other line. A missing "]" ends the name at
// the end of the line.
std::optional<std::string_view> SectionOf(std::string_view line)
{
    const std::string_view content = Trimmed(line);
    if (content.empty() || content.front() != '[') {
        return std::nullopt;
    }
    const std::string_view inside = content.substr(1);
    return Trimmed(inside.substr(0, inside.find(']')));
}

// The key of a "key=value" line; nothing for a comment or a line without "=".
std::optional<std::string_view> KeyOf(std::string_view line)
{
    const std::string_view content = Trimmed(line);
    const std::string_view::size_type equals = content.find('=');
    if (content.empty() || content.front() == ';' || equals == std::string_view::npos) {
        return std::nullopt;
    }
    return Trimmed(content.substr(0, equals));
}

std::string ValueOf(std::string_view line)
{
    std::string_view value = Trimmed(line.substr(line.find('=') + 1));
    if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front()) {
        value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
}

bool IsBlank(std::string_view line)
{
    return Trimmed(line).empty();
}

}

ProfileText::ProfileText(const std::string& text)
{
    std::string::size_type start = 0;
    while (start < text.size()) {
        const std::string::size_type end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
}

std::optional<std::string> ProfileText::Find(const std::string& section, const std::string& key) const
{
    bool inSection = false;
    for (const std::string& line : lines) {
        if (const std::optional<std::string_view> name = SectionOf(line)) {
            inSection = EqualWithoutCase(*name, section);
        } else if (const std::optional<std::string_view> name = KeyOf(line); inSection && name) {
            if (EqualWithoutCase(*name, key)) {
                return ValueOf(line);
            }
        }
    }
    return std::nullopt;
}

void ProfileText::Set(const std::string& section, const std::string& key, const std::string& value)
{
    const std::string setting = key + "=" + value;
    std::optional<std::vector<std::string>::size_type> lastLineOfSection;
    bool inSection = false;
    for (std::vector<std::string>::size_type index = 0; index < lines.size(); ++index) {
        const std::string& line = lines[index];
        if (const std::optional<std::string_view> name = SectionOf(line)) {
            inSection = EqualWithoutCase(*name, section);
        } else if (const std::optional<std::string_view> name = KeyOf(line);
                   inSection && name && EqualWithoutCase(*name, key)) {
            lines[index] = setting;
            return;
        }
        if (inSection && !IsBlank(line)) {
            lastLineOfSection = index;
        }
    }
    if (lastLineOfSection) {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(*lastLineOfSection + 1), setting);
        return;
    }
    lines.push_back("[" + section + "]");
    lines.push_back(setting);
}

std::string ProfileText::Text() const
{
    std::string text;
    for (const std::string& line : lines) {
        text += line;
        text += '\n';
    }
    return text;
}

}
