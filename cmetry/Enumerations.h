#pragma once

#include <cstdint>

#include "utilities/String.h"

namespace CMetry {

// The numbers are what conditions store and what other layers pass around; they don't follow the
// order of the keyword lists that the vocabulary offers.
enum class Illumination : int32_t {
    Undefined = -1,
    A = 0,
    B = 1,
    C = 2,
    D75 = 3,
    D65 = 4,
    D55 = 5,
    D50 = 6,
    Dxx = 7,
    F2 = 8,
    F7 = 9,
    F11 = 10,
    F = 11,
    Userdefined = 12,
    Emission = 13,
    S0 = 14,
    S1 = 15,
    S2 = 16,
};

enum class Observer : int32_t {
    Undefined = -1,
    TwoDegree = 0,
    TenDegree = 1,
};

enum class WhiteBase : int32_t {
    Undefined = -1,
    Absolute = 0,
    Paper = 1,
    Automatic = 2,
};

enum class DensityStandard : int32_t {
    Undefined = -1,
    DIN = 0,
    DINNB = 1,
    ANSIA = 2,
    ANSIT = 3,
    SPI = 4,
    User = 5,
};

enum class DensityFilterMode : int32_t {
    Undefined = -1,
    Black = 0,
    Cyan = 1,
    Magenta = 2,
    Yellow = 3,
    Max = 4,
    Auto = 5,
};

// Here alone "Undefined" is 0, and 6 to 9 are free.
enum class PhysicalFilter : int32_t {
    Undefined = 0,
    No = 1,
    Polarizer = 2,
    D65 = 3,
    UVCut = 4,
    LastSelectable = 5,
    Custom = 10,
    CalibrationCheck = 11,
    ND0 = 12,
};

// The text forms that conditions are set and read with. A number without a keyword prints as
// "Undefined"; a text that is no keyword fails with ExceptionCMetry and a translated message.
Utilities::String ToString(Observer observer);
Utilities::String ToString(WhiteBase whiteBase);
Utilities::String ToString(DensityStandard standard);
Utilities::String ToString(DensityFilterMode mode);
Utilities::String ToString(PhysicalFilter filter);

Observer ParseObserver(const Utilities::String& text);
WhiteBase ParseWhiteBase(const Utilities::String& text);
DensityStandard ParseDensityStandard(const Utilities::String& text);
DensityFilterMode ParseDensityFilterMode(const Utilities::String& text);
PhysicalFilter ParsePhysicalFilter(const Utilities::String& text);

}
