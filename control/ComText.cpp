#include "control/ComText.h"

#include "utilities/platform/windows/WideText.h"

namespace Control {

std::string ComText::Narrow(BSTR text)
{
    if (text == nullptr) {
        return std::string();
    }
    return Utilities::WideText::ToNarrow(std::wstring(text, ::SysStringLen(text)));
}

BSTR ComText::Wide(const char* text)
{
    const std::wstring wide = Utilities::WideText::FromNarrow(text != nullptr ? text : "");
    return ::SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
}

}
