#include "utilities/platform/windows/WideText.h"

#include <windows.h>

#include <algorithm>

namespace Utilities {

std::wstring WideText::FromNarrow(const std::string& text)
{
    if (text.empty()) {
        return std::wstring();
    }
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), length);
    return wide;
}

std::string WideText::ToNarrow(const std::wstring& text)
{
    if (text.empty()) {
        return std::string();
    }
    const int size = static_cast<int>(text.size());
    const int length = ::WideCharToMultiByte(CP_ACP, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, text.data(), size, narrow.data(), length, nullptr, nullptr);
    return narrow;
}

std::string WideText::NeutralPath(const std::wstring& path)
{
    std::wstring neutral = path;
    std::replace(neutral.begin(), neutral.end(), L'\\', L'/');
    return ToNarrow(neutral);
}

}
