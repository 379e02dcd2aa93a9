#include "cmetry/ColorClass.h"

#include <cmath>
#include <iterator>

#include "cmetry/HvColorVector.h"
#include "cmetry/SpectrumToColorSpace.h"
#include "cmetry/TranslatedMessage.h"

namespace CMetry {

namespace {

constexpr double hueDegreesPerRadian = 180.0 / M_PI;
// A neutral colour has no hue; its chroma limit keeps it achromatic whatever its chroma.
constexpr int noHue = -1;
constexpr double limitWithoutHue = 1001.0;

// The class 1 hues, between magenta and blue, have never had a name of their own.
constexpr const char* names[] = {"Magenta", nullptr, "Blue", "Cyan", "Turquo", "Green", "Olive", "YellowGreen", "Beige",
    "Brown", "Yellow", "Orange", "Red", "White", "Gray", "Black"};

// Lighter colours are allowed less chroma before they count as chromatic.
double ChromaLimit(double lightness)
{
    if (lightness > 75.0) {
        return 7.0 - 2.0 * (lightness - 75.0) / 25.0;
    }
    return 10.0 - 3.0 * lightness / 75.0;
}

// The hue in whole degrees, truncated before the quadrant is added.
int WholeHue(double a, double b)
{
    const int truncated = a == 0.0 ? 0 : static_cast<int>(std::atan(b / a) * hueDegreesPerRadian);
    if (a > 0.0) {
        return b >= 0.0 ? truncated : truncated + 360;
    }
    if (a < 0.0) {
        return truncated + 180;
    }
    if (b > 0.0) {
        return 90;
    }
    return b < 0.0 ? 270 : noHue;
}

int AchromaticClass(double lightness)
{
    if (lightness > 80.0 && lightness <= 100.0) {
        return ColorClass::white;
    }
    if (lightness > 30.0 && lightness <= 80.0) {
        return ColorClass::gray;
    }
    if (lightness >= 0.0 && lightness <= 30.0) {
        return ColorClass::black;
    }
    return ColorClass::white;
}

int YellowClass(double lightness, double chroma, int hue)
{
    if (chroma < 50.0 && lightness >= 65.0) {
        return ColorClass::beige;
    }
    if (chroma < 70.0 && lightness < 65.0 && hue >= 90) {
        return ColorClass::olive;
    }
    if (chroma >= 70.0 || lightness >= 65.0 || hue >= 90) {
        return ColorClass::yellow;
    }
    return ColorClass::brown;
}

int OrangeClass(double lightness, double chroma)
{
    if (chroma < 70.0 && lightness >= 65.0) {
        return ColorClass::beige;
    }
    return chroma >= 70.0 ? ColorClass::orange : ColorClass::brown;
}

int RedClass(double lightness, double chroma, int hue)
{
    if (chroma < 40.0 && lightness < 50.0) {
        return ColorClass::brown;
    }
    if (chroma >= 55.0 || lightness >= 65.0 || hue <= 35) {
        return ColorClass::red;
    }
    return ColorClass::brown;
}

int ChromaticClass(double lightness, double chroma, int hue)
{
    if (hue >= 300 && hue <= 334) {
        return ColorClass::violet;
    }
    if (hue >= 260 && hue <= 299) {
        return ColorClass::blue;
    }
    if (hue >= 210 && hue <= 259) {
        return ColorClass::cyan;
    }
    if (hue >= 175 && hue <= 209) {
        return ColorClass::turquoise;
    }
    if (hue >= 135 && hue <= 174) {
        return ColorClass::green;
    }
    if (hue >= 110 && hue <= 134) {
        return chroma < 50.0 && lightness < 50.0 ? ColorClass::olive : ColorClass::yellowGreen;
    }
    if (hue >= 80 && hue <= 109) {
        return YellowClass(lightness, chroma, hue);
    }
    if (hue >= 45 && hue <= 79) {
        return OrangeClass(lightness, chroma);
    }
    if (hue >= 20 && hue <= 44) {
        return RedClass(lightness, chroma, hue);
    }
    return ColorClass::magenta;
}

}

int ColorClass::GetColorClass(const HvSpectrum& spectrum)
{
    HvMeasureConditions conditions(spectrum.Conditions());
    conditions.CopyPhysicalFilter(spectrum.Conditions());
    HvColorVector lab;
    if (!GetLab(spectrum, conditions, lab)) {
        return failed;
    }
    return GetColorClass(lab[0], lab[1], lab[2]);
}

int ColorClass::GetColorClass(float lightness, float a, float b)
{
    const double chroma = std::sqrt(static_cast<double>(a) * a + static_cast<double>(b) * b);
    const int hue = WholeHue(a, b);
    const double limit = hue == noHue ? limitWithoutHue : ChromaLimit(lightness);
    if (!(chroma > limit)) {
        return AchromaticClass(lightness);
    }
    return ChromaticClass(lightness, chroma, hue);
}

Utilities::String ColorClass::GetColorName(const HvSpectrum& spectrum)
{
    return GetColorName(GetColorClass(spectrum));
}

Utilities::String ColorClass::GetColorName(int colorClass)
{
    const bool named = colorClass >= 0 && colorClass < static_cast<int>(std::size(names)) && names[colorClass];
    return TranslatedMessage(named ? names[colorClass] : "Undefined");
}

}
