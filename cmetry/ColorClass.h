#pragma once

#include "cmetry/HvSpectrum.h"
#include "utilities/String.h"

namespace CMetry {

// A colour sorted into one of sixteen named classes by its CIELab lightness, chroma and hue: the
// hue decides for chromatic colours, the lightness for the achromatic ones near the grey axis.
class ColorClass {
public:
    static constexpr int magenta = 0;
    static constexpr int violet = 1;
    static constexpr int blue = 2;
    static constexpr int cyan = 3;
    static constexpr int turquoise = 4;
    static constexpr int green = 5;
    static constexpr int olive = 6;
    static constexpr int yellowGreen = 7;
    static constexpr int beige = 8;
    static constexpr int brown = 9;
    static constexpr int yellow = 10;
    static constexpr int orange = 11;
    static constexpr int red = 12;
    static constexpr int white = 13;
    static constexpr int gray = 14;
    static constexpr int black = 15;
    static constexpr int failed = -1;

    // The class of the spectrum's Lab under its own conditions; -1 when it has none.
    static int GetColorClass(const HvSpectrum& spectrum);
    static int GetColorClass(float lightness, float a, float b);
    // The name of the class in the user's language; "Undefined" for the class without a name and
    // for -1.
    static Utilities::String GetColorName(const HvSpectrum& spectrum);
    static Utilities::String GetColorName(int colorClass);
};

}
