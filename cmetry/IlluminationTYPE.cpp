#include "cmetry/IlluminationTYPE.h"

#include "cmetry/ExceptionCMetry.h"
#include "cmetry/TranslatedMessage.h"
#include "utilities/ExceptionOutOfBound.h"

namespace CMetry {

using Utilities::String;

namespace {

struct IlluminationKeyword {
    Illumination type;
    const char* text;
};

// The types that have a keyword of their own, in the order a text is compared with them.
constexpr IlluminationKeyword plainKeywords[] = {
    {Illumination::A, "A"},
    {Illumination::B, "B"},
    {Illumination::C, "C"},
    {Illumination::D75, "D75"},
    {Illumination::D65, "D65"},
    {Illumination::D55, "D55"},
    {Illumination::D50, "D50"},
    {Illumination::F2, "F2"},
    {Illumination::F7, "F7"},
    {Illumination::F11, "F11"},
};

constexpr IlluminationKeyword closingKeywords[] = {
    {Illumination::Undefined, "Undefined"},
    {Illumination::Userdefined, "Userdefined"},
    {Illumination::Emission, "Emission"},
};

constexpr const char* daylightPrefix = "Dxx, Temperature";

ExceptionCMetry NotAnIllumination(const String& text)
{
    return ExceptionCMetry(TranslatedMessage("%VALUE% is not a valid illuminationtype", "%VALUE%", text));
}

// The number behind a prefix, read as String reads a short; a text that holds none is no
// illumination.
int16_t NumberBehind(const String& text, unsigned long prefixLength)
{
    try {
        return text.SubString(prefixLength).ToShort();
    } catch (const Utilities::ExceptionOutOfBound&) {
        throw NotAnIllumination(text);
    }
}

bool IsDaylightText(const String& text)
{
    const long colon = text.Find(':');
    return colon > 0 && text.SubString(0, static_cast<unsigned long>(colon)) == String(daylightPrefix);
}

}

IlluminationTYPE::IlluminationTYPE() : IlluminationTYPE(Illumination::Undefined) { }

IlluminationTYPE::IlluminationTYPE(Illumination type) : fValue(0), colorTemperature(0), type(type) { }

IlluminationTYPE IlluminationTYPE::Fluorescent(uint8_t fValue)
{
    IlluminationTYPE illumination(Illumination::F);
    illumination.fValue = fValue;
    return illumination;
}

IlluminationTYPE IlluminationTYPE::Daylight(int16_t colorTemperature)
{
    IlluminationTYPE illumination(Illumination::Dxx);
    illumination.colorTemperature = colorTemperature;
    return illumination;
}

bool IlluminationTYPE::operator==(const IlluminationTYPE& other) const
{
    return type == other.type && fValue == other.fValue && colorTemperature == other.colorTemperature;
}

String ToString(const IlluminationTYPE& illumination)
{
    switch (illumination.GetType()) {
    case Illumination::Dxx:
        return String(daylightPrefix) + String(":") + String(static_cast<long>(illumination.GetColorTemperature()));
    case Illumination::F:
        return String("F") + String(static_cast<long>(illumination.GetFValue()));
    default:
        break;
    }
    for (const IlluminationKeyword& keyword : plainKeywords) {
        if (keyword.type == illumination.GetType()) {
            return String(keyword.text);
        }
    }
    for (const IlluminationKeyword& keyword : closingKeywords) {
        if (keyword.type == illumination.GetType()) {
            return String(keyword.text);
        }
    }
    return String("Undefined");
}

IlluminationTYPE ParseIllumination(const String& text)
{
    for (const IlluminationKeyword& keyword : plainKeywords) {
        if (text == String(keyword.text)) {
            return IlluminationTYPE(keyword.type);
        }
    }
    if (text.Length() > 0 && text.CString()[0] == 'F') {
        return IlluminationTYPE::Fluorescent(static_cast<uint8_t>(NumberBehind(text, 1)));
    }
    if (IsDaylightText(text)) {
        return IlluminationTYPE::Daylight(NumberBehind(text, static_cast<unsigned long>(text.Find(':')) + 1));
    }
    for (const IlluminationKeyword& keyword : closingKeywords) {
        if (text == String(keyword.text)) {
            return IlluminationTYPE(keyword.type);
        }
    }
    throw NotAnIllumination(text);
}

}
