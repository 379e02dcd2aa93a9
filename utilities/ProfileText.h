#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Utilities {

// The text of a settings file of lines "[section]" and "key=value". Names of sections and keys
// are compared without regard to case and without the blanks around them. Lines of any other
// form are kept as they stand.
class ProfileText {
public:
    explicit ProfileText(const std::string& text);

    // The value of the first key of that name in the section, without the blanks around it and
    // without one pair of enclosing quotes; nothing when the section or the key is missing.
    std::optional<std::string> Find(const std::string& section, const std::string& key) const;

    // Replaces the key's line, else adds the key behind the last line of its section, else adds
    // the section with the key at the end.
    void Set(const std::string& section, const std::string& key, const std::string& value);

    // Every line ends with a line feed.
    std::string Text() const;

private:
    std::vector<std::string> lines;
};

}
