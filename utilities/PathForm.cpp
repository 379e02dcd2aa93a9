#include "utilities/PathForm.h"

#include <string>

namespace Utilities {

namespace {

constexpr char separator = '/';
constexpr char windowsSeparator = '\\';

bool IsDoubleByteLead(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 128 && byte <= 159;
}

}

String PathForm::ToNeutral(const String& path)
{
    std::string neutral(path.CString(), path.Length());
    for (std::string::size_type i = 0; i < neutral.size(); ++i) {
        if (neutral[i] == windowsSeparator && !(i > 0 && IsDoubleByteLead(neutral[i - 1]))) {
            neutral[i] = separator;
        }
    }
    return String(neutral);
}

String PathForm::WithoutTrailingSeparator(const String& path)
{
    const uint32_t length = path.Length();
    if (length > 1 && path.CString()[length - 1] == separator) {
        return path.SubString(0, length - 1);
    }
    return path;
}

String PathForm::LastComponent(const String& path)
{
    const long last = path.FindReverse(separator);
    return last < 0 ? path : path.SubString(static_cast<unsigned long>(last) + 1);
}

String PathForm::Parent(const String& path)
{
    const long last = path.FindReverse(separator);
    if (last < 0) {
        return String(".");
    }
    if (last == 0) {
        return String(separator);
    }
    return path.SubString(0, static_cast<unsigned long>(last));
}

}
