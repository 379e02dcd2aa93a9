#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace Control {

// Texts between COM and the exported functions, which take 8-bit texts in the system's code page.
class ComText {
public:
    static std::string Narrow(BSTR text);
    // A new BSTR that the caller owns; an empty one for a null text.
    static BSTR Wide(const char* text);
};

}
