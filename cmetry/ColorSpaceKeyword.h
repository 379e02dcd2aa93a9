#pragma once

#include <cstring>

#include "utilities/String.h"

namespace CMetry::ColorSpaceKeyword {

// The values of "ColorSpaceDescription.Type" that the conversions choose their way by.
inline constexpr char cieLab[] = "CIELab";
inline constexpr char cieLCh[] = "CIELCh";
inline constexpr char cieLuv[] = "CIELuv";
inline constexpr char cieLChuv[] = "CIELChuv";
inline constexpr char cieuvY1960[] = "CIEuvY1960";
inline constexpr char cieuvY1976[] = "CIEuvY1976";
inline constexpr char cieXYZ[] = "CIEXYZ";
inline constexpr char ciexyY[] = "CIExyY";
inline constexpr char hunterLab[] = "HunterLab";
inline constexpr char rxRyRz[] = "RxRyRz";
inline constexpr char labMg[] = "LABmg";
inline constexpr char lchMg[] = "LCHmg";
inline constexpr char rgb[] = "RGB";

// Compares without making a String of the keyword, as this runs for every spectrum.
inline bool Is(const Utilities::String& text, const char* keyword)
{
    const std::size_t length = std::strlen(keyword);
    return text.Length() == length && std::memcmp(text.CString(), keyword, length) == 0;
}

}
