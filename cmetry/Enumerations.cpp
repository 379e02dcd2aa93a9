#include "cmetry/Enumerations.h"

#include <span>

#include "cmetry/ExceptionCMetry.h"
#include "cmetry/TranslatedMessage.h"

namespace CMetry {

using Utilities::String;

namespace {

template<class Number>
struct Keyword {
    Number number;
    const char* text;
};

constexpr Keyword<Observer> observerKeywords[] = {
    {Observer::TwoDegree, "TwoDegree"},
    {Observer::TenDegree, "TenDegree"},
    {Observer::Undefined, "Undefined"},
};

constexpr Keyword<WhiteBase> whiteBaseKeywords[] = {
    {WhiteBase::Absolute, "Absolute"},
    {WhiteBase::Paper, "Paper"},
    {WhiteBase::Automatic, "Automatic"},
    {WhiteBase::Undefined, "Undefined"},
};

constexpr Keyword<DensityStandard> densityStandardKeywords[] = {
    {DensityStandard::DIN, "DIN"},
    {DensityStandard::DINNB, "DINNB"},
    {DensityStandard::ANSIA, "ANSIA"},
    {DensityStandard::ANSIT, "ANSIT"},
    {DensityStandard::SPI, "SPI"},
    {DensityStandard::User, "User"},
    {DensityStandard::Undefined, "Undefined"},
};

constexpr Keyword<DensityFilterMode> densityFilterModeKeywords[] = {
    {DensityFilterMode::Black, "Black"},
    {DensityFilterMode::Cyan, "Cyan"},
    {DensityFilterMode::Magenta, "Magenta"},
    {DensityFilterMode::Yellow, "Yellow"},
    {DensityFilterMode::Max, "Max"},
    {DensityFilterMode::Auto, "Auto"},
    {DensityFilterMode::Undefined, "Undefined"},
};

constexpr Keyword<PhysicalFilter> physicalFilterKeywords[] = {
    {PhysicalFilter::No, "No"},
    {PhysicalFilter::Polarizer, "Polarizer"},
    {PhysicalFilter::D65, "D65"},
    {PhysicalFilter::UVCut, "UVCut"},
    {PhysicalFilter::LastSelectable, "LastSelectable"},
    {PhysicalFilter::Custom, "Custom"},
    {PhysicalFilter::CalibrationCheck, "CalibrationCheck"},
    {PhysicalFilter::ND0, "ND0"},
    {PhysicalFilter::Undefined, "Undefined"},
};

template<class Number>
String TextOf(Number number, std::span<const Keyword<Number>> keywords)
{
    for (const Keyword<Number>& keyword : keywords) {
        if (keyword.number == number) {
            return String(keyword.text);
        }
    }
    return String("Undefined");
}

template<class Number>
Number NumberOf(const String& text, std::span<const Keyword<Number>> keywords, const char* failure)
{
    for (const Keyword<Number>& keyword : keywords) {
        if (text == String(keyword.text)) {
            return keyword.number;
        }
    }
    throw ExceptionCMetry(TranslatedMessage(failure, "%VALUE%", text));
}

}

String ToString(Observer observer)
{
    return TextOf<Observer>(observer, observerKeywords);
}

String ToString(WhiteBase whiteBase)
{
    return TextOf<WhiteBase>(whiteBase, whiteBaseKeywords);
}

String ToString(DensityStandard standard)
{
    return TextOf<DensityStandard>(standard, densityStandardKeywords);
}

String ToString(DensityFilterMode mode)
{
    return TextOf<DensityFilterMode>(mode, densityFilterModeKeywords);
}

String ToString(PhysicalFilter filter)
{
    return TextOf<PhysicalFilter>(filter, physicalFilterKeywords);
}

Observer ParseObserver(const String& text)
{
    return NumberOf<Observer>(text, observerKeywords, "%VALUE% is not a valid observertype");
}

WhiteBase ParseWhiteBase(const String& text)
{
    return NumberOf<WhiteBase>(text, whiteBaseKeywords, "%VALUE% is not a valid whitespacetype");
}

DensityStandard ParseDensityStandard(const String& text)
{
    return NumberOf<DensityStandard>(text, densityStandardKeywords, "%VALUE% is not a valid density standard type");
}

DensityFilterMode ParseDensityFilterMode(const String& text)
{
    return NumberOf<DensityFilterMode>(text, densityFilterModeKeywords, "%VALUE% is not a valid density filter mode");
}

// The physical filter shares the white base's message.
PhysicalFilter ParsePhysicalFilter(const String& text)
{
    return NumberOf<PhysicalFilter>(text, physicalFilterKeywords, "%VALUE% is not a valid whitespacetype");
}

}
