#pragma once

#include <string>

namespace Utilities {

// The module's 8-bit texts are in the system's ANSI code page; the system's own calls take UTF-16.
class WideText {
public:
    static std::wstring FromNarrow(const std::string& text);
    static std::string ToNarrow(const std::wstring& text);
    // A path as the system gave it, with '/' between its parts as the module writes them.
    static std::string NeutralPath(const std::wstring& path);
};

}
