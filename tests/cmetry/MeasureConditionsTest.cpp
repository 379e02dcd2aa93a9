#include "cmetry/ConditionKey.h"
#include "cmetry/Enumerations.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/IlluminationTYPE.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/ExceptionNullpointer.h"
#include "utilities/LanguageService.h"
#include "utilities/Map.h"

#include "tests/cmetry/ColourSamples.h"
#include "tests/utilities/FailureText.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace CMetry;
using Utilities::Map;
using Utilities::String;

namespace {

std::string Text(const String& text)
{
    return text.CString();
}

std::string ConditionOf(const HvMeasureConditions& conditions, const char* key)
{
    return Text(conditions.GetCondition(key));
}

std::vector<std::string> ValidValues(const char* key)
{
    const Utilities::Vector<String> values = HvMeasureConditions::GetValidValues(key);
    std::vector<std::string> texts;
    for (unsigned long index = 0; index < values.Size(); ++index) {
        texts.push_back(Text(values[index]));
    }
    return texts;
}

std::string SetFailure(HvMeasureConditions& conditions, const char* key, const char* value)
{
    return FailureText<ExceptionCMetry>([&] { conditions.SetCondition(key, value); });
}

std::vector<std::string> ChannelNames(const char* colorSpace, const char* vectorKind, uint16_t count)
{
    HvMeasureConditions conditions;
    conditions.SetCondition(ConditionKey::colorSpace, colorSpace);
    conditions.SetCondition(ConditionKey::absoluteOrDeltaVector, vectorKind);
    std::vector<std::string> names;
    for (uint16_t index = 0; index < count; ++index) {
        names.push_back(Text(conditions.GetChannelName(index)));
    }
    return names;
}

// Knows the templates of two messages only: a message whose placeholder was filled in before the
// translation would stay English.
class GermanLanguageService : public Utilities::LanguageService {
public:
    String Translate(const String& key) override
    {
        if (Text(key) == "%VALUE% is not a valid color space") {
            return String("%VALUE% ist kein Farbraum");
        }
        if (Text(key) == "Modification not supported for key: %KEY%") {
            return String("%KEY% kann nicht gesetzt werden");
        }
        return key;
    }
    void SetLanguage(const String&) override { }
    String GetLanguage() const override { return String("Deutsch"); }
    Utilities::Vector<String> GetLanguages() const override { return Utilities::Vector<String>(0); }
    String ReverseTranslate(const String& text) override { return text; }
    void SetMark(bool) override { }
    bool GetMark() const override { return false; }
    bool IsLoaded() const override { return true; }
    void Load() override { }
};

}

TEST(MeasureConditions, NewConditionsAnswerEveryKeyWithItsDefault)
{
    const HvMeasureConditions conditions;
    const std::pair<const char*, const char*> defaults[] = {{"Colorimetric.Illumination", "D65"},
        {"Colorimetric.Observer", "TwoDegree"}, {"Colorimetric.WhiteBase", "Automatic"},
        {"Colorimetric.DensityStandard", "DIN"}, {"Colorimetric.DensityFilterMode", "Auto"}, {"Physical.Filter", "No"},
        {"Physical.NumberOfDataPointsSpectrum", "36"}, {"Physical.WavelengthSpectrumMax", "730nm"},
        {"Physical.WavelengthSpectrumMin", "380nm"}, {"ColorSpaceDescription.Type", "CIELab"},
        {"ColorSpaceDescription.AbsoluteOrDeltaVector", "AbsoluteVector"},
        {"ColorSpaceDescription.DeltaEFormula", "CIELab"}, {"CustomCondition", "Undefined"},
        {"Some.Other.Key", "Undefined"}};
    for (const auto& [key, value] : defaults) {
        EXPECT_EQ(value, ConditionOf(conditions, key)) << key;
    }
    // The texts come from the numbers through the keyword tables; these pin the numbers themselves.
    EXPECT_EQ(Illumination::D65, conditions.GetIllumination().GetType());
    EXPECT_EQ(Observer::TwoDegree, conditions.GetObserver());
    EXPECT_EQ(WhiteBase::Automatic, conditions.GetWhiteBase());
    EXPECT_EQ(DensityStandard::DIN, conditions.GetDensityStandard());
    EXPECT_EQ(DensityFilterMode::Auto, conditions.GetDensityFilterMode());
    EXPECT_EQ(PhysicalFilter::No, conditions.GetPhysicalFilter());
    EXPECT_TRUE(conditions.GetUserDefinedIlluminationPointer().IsNull());
}

TEST(MeasureConditions, VocabularyListsTheValidValuesInListOrder)
{
    EXPECT_EQ(
        (std::vector<std::string>{"A", "B", "C", "D50", "D55", "D65", "D75", "Dxx", "F", "Userdefined", "Emission"}),
        ValidValues("Colorimetric.Illumination"));
    EXPECT_EQ((std::vector<std::string>{"TwoDegree", "TenDegree"}), ValidValues("Colorimetric.Observer"));
    EXPECT_EQ((std::vector<std::string>{"Absolute", "Paper", "Automatic"}), ValidValues("Colorimetric.WhiteBase"));
    EXPECT_EQ((std::vector<std::string>{"DIN", "DINNB", "ANSIA", "ANSIT", "SPI", "User"}),
        ValidValues("Colorimetric.DensityStandard"));
    EXPECT_EQ((std::vector<std::string>{"Black", "Cyan", "Magenta", "Yellow", "Max", "Auto"}),
        ValidValues("Colorimetric.DensityFilterMode"));
    EXPECT_EQ((std::vector<std::string>{"No", "Polarizer", "UVCut", "D65", "Custom", "CalibrationCheck", "ND0"}),
        ValidValues("Physical.Filter"));
    EXPECT_EQ((std::vector<std::string>{"CIELab", "CIELCh", "CIELuv", "CIELChuv", "CIEuvY1960", "CIEuvY1976", "CIEXYZ",
                  "CIExyY", "HunterLab", "RxRyRz", "LABmg", "LCHmg", "RGB", "CMYK"}),
        ValidValues("ColorSpaceDescription.Type"));
    EXPECT_EQ((std::vector<std::string>{"AbsoluteVector", "DeltaVector"}),
        ValidValues("ColorSpaceDescription.AbsoluteOrDeltaVector"));
    EXPECT_EQ((std::vector<std::string>{"CIELab", "CIELuv", "LABmg", "FMCII", "CMC", "94", "CIEDE2000"}),
        ValidValues("ColorSpaceDescription.DeltaEFormula"));
    EXPECT_EQ((std::vector<std::string>{"X", "Y", "Z", "delta X", "delta Y", "delta Z"}),
        ValidValues("ColorSpaceDescription.CIEXYZ"));
    EXPECT_TRUE(ValidValues("No.Such.Key").empty());
}

TEST(MeasureConditions, EveryValidValueOfAKeyIsSetAndReadBack)
{
    const char* keys[] = {"Colorimetric.Observer", "Colorimetric.WhiteBase", "Colorimetric.DensityStandard",
        "Colorimetric.DensityFilterMode", "Physical.Filter", "ColorSpaceDescription.Type",
        "ColorSpaceDescription.AbsoluteOrDeltaVector", "ColorSpaceDescription.DeltaEFormula"};
    for (const char* key : keys) {
        for (const std::string& value : ValidValues(key)) {
            HvMeasureConditions conditions;
            conditions.SetCondition(key, value.c_str());
            EXPECT_EQ(value, ConditionOf(conditions, key)) << key;
        }
    }
    for (const char* value : {"A", "B", "C", "D50", "D55", "D65", "D75", "Userdefined", "Emission"}) {
        HvMeasureConditions conditions;
        conditions.SetCondition("Colorimetric.Illumination", value);
        EXPECT_EQ(value, ConditionOf(conditions, "Colorimetric.Illumination"));
    }
}

TEST(MeasureConditions, IlluminationTextsGiveTheirNumbers)
{
    const std::pair<const char*, Illumination> numbers[] = {{"A", Illumination::A}, {"B", Illumination::B},
        {"C", Illumination::C}, {"D75", Illumination::D75}, {"D65", Illumination::D65}, {"D55", Illumination::D55},
        {"D50", Illumination::D50}, {"F2", Illumination::F2}, {"F7", Illumination::F7}, {"F11", Illumination::F11},
        {"Userdefined", Illumination::Userdefined}, {"Emission", Illumination::Emission},
        {"Undefined", Illumination::Undefined}};
    for (const auto& [text, number] : numbers) {
        EXPECT_EQ(IlluminationTYPE(number), ParseIllumination(text)) << text;
        EXPECT_EQ(text, Text(ToString(IlluminationTYPE(number))));
    }

    const IlluminationTYPE f3 = ParseIllumination("F3");
    EXPECT_EQ(Illumination::F, f3.GetType());
    EXPECT_EQ(3, f3.GetFValue());
    EXPECT_EQ("F3", Text(ToString(f3)));
    EXPECT_EQ(IlluminationTYPE::Fluorescent(12), ParseIllumination("F12"));
    // The F value is kept in 8 bits.
    EXPECT_EQ(IlluminationTYPE::Fluorescent(44), ParseIllumination("F300"));

    const IlluminationTYPE daylight = ParseIllumination("Dxx, Temperature:5000");
    EXPECT_EQ(Illumination::Dxx, daylight.GetType());
    EXPECT_EQ(5000, daylight.GetColorTemperature());
    EXPECT_EQ("Dxx, Temperature:5000", Text(ToString(daylight)));
    EXPECT_EQ(IlluminationTYPE::Daylight(6504), ParseIllumination("Dxx, Temperature: 6504"));

    EXPECT_EQ("Undefined", Text(ToString(IlluminationTYPE(Illumination::S0))));
    EXPECT_EQ("Undefined", Text(ToString(IlluminationTYPE(static_cast<Illumination>(42)))));
}

TEST(MeasureConditions, IlluminationsCompareByEveryField)
{
    EXPECT_EQ(IlluminationTYPE(), IlluminationTYPE(Illumination::Undefined));
    EXPECT_NE(IlluminationTYPE::Fluorescent(3), IlluminationTYPE::Fluorescent(4));
    EXPECT_NE(IlluminationTYPE::Daylight(5000), IlluminationTYPE::Daylight(5001));
    EXPECT_NE(IlluminationTYPE::Fluorescent(0), IlluminationTYPE(Illumination::F7));
    EXPECT_EQ(IlluminationTYPE(Illumination::F), IlluminationTYPE::Fluorescent(0));
}

TEST(MeasureConditions, SettingConditionsStoresTheirNumbers)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "F3");
    EXPECT_EQ(IlluminationTYPE::Fluorescent(3), conditions.GetIllumination());
    EXPECT_EQ("F3", ConditionOf(conditions, "Colorimetric.Illumination"));
    conditions.SetCondition("Colorimetric.Illumination", "Dxx, Temperature:5000");
    EXPECT_EQ("Dxx, Temperature:5000", ConditionOf(conditions, "Colorimetric.Illumination"));

    conditions.SetCondition("Colorimetric.Observer", "Undefined");
    EXPECT_EQ(-1, static_cast<int>(conditions.GetObserver()));
    EXPECT_EQ("Undefined", ConditionOf(conditions, "Colorimetric.Observer"));

    conditions.SetCondition("Colorimetric.WhiteBase", "Paper");
    EXPECT_EQ(1, static_cast<int>(conditions.GetWhiteBase()));
    conditions.SetCondition("Colorimetric.DensityStandard", "SPI");
    EXPECT_EQ(4, static_cast<int>(conditions.GetDensityStandard()));
    conditions.SetCondition("Colorimetric.DensityFilterMode", "Max");
    EXPECT_EQ(4, static_cast<int>(conditions.GetDensityFilterMode()));

    const std::pair<const char*, int> filters[] = {{"No", 1}, {"Polarizer", 2}, {"D65", 3}, {"UVCut", 4},
        {"LastSelectable", 5}, {"Custom", 10}, {"CalibrationCheck", 11}, {"ND0", 12}, {"Undefined", 0}};
    for (const auto& [text, number] : filters) {
        conditions.SetCondition("Physical.Filter", text);
        EXPECT_EQ(number, static_cast<int>(conditions.GetPhysicalFilter())) << text;
        EXPECT_EQ(text, ConditionOf(conditions, "Physical.Filter"));
    }
    EXPECT_EQ("Undefined", Text(ToString(static_cast<PhysicalFilter>(7))));

    conditions.SetCondition("ColorSpaceDescription.Type", "Undefined");
    EXPECT_EQ("Undefined", ConditionOf(conditions, "ColorSpaceDescription.Type"));
}

TEST(MeasureConditions, WrongValuesFailWithTheirTextsAndChangeNothing)
{
    const std::pair<const char*, const char*> failures[] = {
        {"Colorimetric.WhiteBase", "Lab is not a valid whitespacetype"},
        {"Colorimetric.Observer", "Lab is not a valid observertype"},
        {"Colorimetric.Illumination", "Lab is not a valid illuminationtype"},
        {"Colorimetric.DensityStandard", "Lab is not a valid density standard type"},
        {"Colorimetric.DensityFilterMode", "Lab is not a valid density filter mode"},
        {"Physical.Filter", "Lab is not a valid whitespacetype"},
        {"ColorSpaceDescription.AbsoluteOrDeltaVector", "Lab is not valid for absolute or relative vectors"},
        {"ColorSpaceDescription.Type", "Lab is not a valid color space"},
        {"ColorSpaceDescription.DeltaEFormula", "Lab is not a valid delta E formula"}};
    HvMeasureConditions conditions;
    conditions.SetCondition("Colorimetric.Illumination", "F3");
    conditions.SetCondition("ColorSpaceDescription.Type", "CIEXYZ");
    const HvMeasureConditions before = conditions;
    for (const auto& [key, message] : failures) {
        EXPECT_EQ(message, SetFailure(conditions, key, "Lab"));
        EXPECT_EQ(before, conditions) << key;
    }
    EXPECT_EQ("F3", ConditionOf(conditions, "Colorimetric.Illumination"));
    // Keywords are compared exactly.
    EXPECT_EQ("cielab is not a valid color space", SetFailure(conditions, "ColorSpaceDescription.Type", "cielab"));
    EXPECT_EQ("d65 is not a valid illuminationtype", SetFailure(conditions, "Colorimetric.Illumination", "d65"));
}

TEST(MeasureConditions, IlluminationTextsWithoutTheirNumberFail)
{
    HvMeasureConditions conditions;
    for (const char* text :
        {"F", "Fx", "F99999", "Dxx", "Dxx, Temperature:", "Dxx, Temperature:hot", "Dxx, Temp:5000", ""}) {
        EXPECT_EQ(std::string(text) + " is not a valid illuminationtype",
            SetFailure(conditions, "Colorimetric.Illumination", text));
    }
    EXPECT_EQ(HvMeasureConditions(), conditions);
}

TEST(MeasureConditions, FixedGridKeysAreAcceptedAndIgnored)
{
    HvMeasureConditions conditions;
    conditions.SetCondition("Physical.WavelengthSpectrumMin", "anything");
    conditions.SetCondition("Physical.WavelengthSpectrumMax", "900nm");
    conditions.SetCondition("Physical.NumberOfDataPointsSpectrum", "81");
    EXPECT_EQ("380nm", ConditionOf(conditions, "Physical.WavelengthSpectrumMin"));
    EXPECT_EQ("730nm", ConditionOf(conditions, "Physical.WavelengthSpectrumMax"));
    EXPECT_EQ("36", ConditionOf(conditions, "Physical.NumberOfDataPointsSpectrum"));
    EXPECT_EQ(HvMeasureConditions(), conditions);
}

TEST(MeasureConditions, CustomConditionsOnlyWhileEnabled)
{
    HvMeasureConditions conditions;
    EXPECT_EQ(
        "Modification not supported for key: Colorimetric.Gloss", SetFailure(conditions, "Colorimetric.Gloss", "High"));
    EXPECT_EQ("Modification not supported for key: colorimetric.illumination",
        SetFailure(conditions, "colorimetric.illumination", "D50"));

    conditions.SetCondition("CustomCondition", "Enable");
    EXPECT_EQ("Enable", ConditionOf(conditions, "CustomCondition"));
    conditions.SetCondition("Colorimetric.Gloss", "High");
    conditions.SetCondition("Anything at all", "");
    EXPECT_EQ("High", ConditionOf(conditions, "Colorimetric.Gloss"));
    EXPECT_EQ("", ConditionOf(conditions, "Anything at all"));
    EXPECT_EQ("Undefined", ConditionOf(conditions, "Never set"));

    const HvMeasureConditions copy = conditions;
    EXPECT_EQ("High", ConditionOf(copy, "Colorimetric.Gloss"));

    conditions.SetCondition("CustomCondition", "Disable");
    EXPECT_EQ("Undefined", ConditionOf(conditions, "Colorimetric.Gloss"));
    EXPECT_EQ("Undefined", ConditionOf(conditions, "CustomCondition"));
    EXPECT_EQ(
        "Modification not supported for key: Colorimetric.Gloss", SetFailure(conditions, "Colorimetric.Gloss", "Low"));
    EXPECT_EQ("High", ConditionOf(copy, "Colorimetric.Gloss"));

    // Custom conditions take no part in equality.
    EXPECT_EQ(HvMeasureConditions(), conditions);
    EXPECT_EQ(HvMeasureConditions(), copy);
}

TEST(MeasureConditions, AMapOfConditionsStopsAtItsFirstFailure)
{
    Map<String, String> pairs;
    pairs["Colorimetric.Observer"] = "TenDegree";
    pairs["Colorimetric.WhiteBase"] = "Paper";
    pairs["ColorSpaceDescription.Type"] = "Lab";
    pairs["Colorimetric.Illumination"] = "A";
    pairs["ColorSpaceDescription.DeltaEFormula"] = "CMC";

    HvMeasureConditions expected;
    bool failed = false;
    for (auto pair = pairs.Begin(); pair.IsValid() && !failed; ++pair) {
        failed = Text(pair.Key()) == "ColorSpaceDescription.Type";
        if (!failed) {
            expected.SetCondition(pair.Key(), pair.Value());
        }
    }
    HvMeasureConditions conditions;
    EXPECT_EQ("Lab is not a valid color space", FailureText<ExceptionCMetry>([&] { conditions.SetCondition(pairs); }));
    EXPECT_EQ(expected, conditions);

    pairs["ColorSpaceDescription.Type"] = "CIELCh";
    conditions.SetCondition(pairs);
    EXPECT_EQ(Observer::TenDegree, conditions.GetObserver());
    EXPECT_EQ(WhiteBase::Paper, conditions.GetWhiteBase());
    EXPECT_EQ(Illumination::A, conditions.GetIllumination().GetType());
    EXPECT_EQ("CIELCh", ConditionOf(conditions, "ColorSpaceDescription.Type"));
    EXPECT_EQ("CMC", ConditionOf(conditions, "ColorSpaceDescription.DeltaEFormula"));
}

// One change of each condition away from the defaults.
const std::pair<const char*, const char*> changes[] = {{"ColorSpaceDescription.Type", "CIEXYZ"},
    {"Colorimetric.Illumination", "D50"}, {"Colorimetric.Observer", "TenDegree"},
    {"Colorimetric.WhiteBase", "Absolute"}, {"Colorimetric.DensityStandard", "ANSIT"},
    {"Colorimetric.DensityFilterMode", "Cyan"}, {"ColorSpaceDescription.DeltaEFormula", "94"},
    {"Physical.Filter", "UVCut"}, {"ColorSpaceDescription.AbsoluteOrDeltaVector", "DeltaVector"}};

TEST(MeasureConditions, EqualityTakesEveryConditionButTheCustomOnes)
{
    const auto with = [](const char* key, const char* value) {
        HvMeasureConditions changed;
        changed.SetCondition(key, value);
        return changed;
    };
    for (const auto& [key, value] : changes) {
        EXPECT_NE(HvMeasureConditions(), with(key, value)) << key;
    }
    EXPECT_NE(with("Colorimetric.Illumination", "F3"), with("Colorimetric.Illumination", "F4"));

    HvMeasureConditions filtered;
    filtered.SetCondition("Physical.Filter", "Polarizer");
    HvMeasureConditions other;
    other.CopyPhysicalFilter(filtered);
    EXPECT_EQ(filtered, other);
}

// Copies share their values until one of them changes; the change must stay with the one changed.
TEST(MeasureConditions, AChangeStaysWithTheCopyChanged)
{
    for (const auto& [key, value] : changes) {
        HvMeasureConditions changed;
        const HvMeasureConditions copy = changed;
        changed.SetCondition(key, value);
        EXPECT_EQ(value, ConditionOf(changed, key));
        EXPECT_EQ(HvMeasureConditions(), copy) << key;
        EXPECT_NE(HvMeasureConditions(), changed) << key;
    }
    HvMeasureConditions source;
    HvMeasureConditions changed = source;
    changed.SetObserver(Observer::TenDegree);
    changed.SetWhiteBase(WhiteBase::Paper);
    changed.SetUserDefinedIllumination(CMetryTest::Flat(50.0f));
    changed.SetCondition("CustomCondition", "Enable");
    source.SetIllumination(IlluminationTYPE(Illumination::A));
    EXPECT_EQ(Observer::TwoDegree, source.GetObserver());
    EXPECT_EQ(WhiteBase::Automatic, source.GetWhiteBase());
    EXPECT_TRUE(source.GetUserDefinedIlluminationPointer().IsNull());
    EXPECT_EQ("Undefined", ConditionOf(source, "CustomCondition"));
    EXPECT_EQ(Illumination::Userdefined, changed.GetIllumination().GetType());
}

TEST(MeasureConditions, UserDefinedIlluminationIsSharedByCopiesAndComparedByIdentity)
{
    const HvSpectrum lamp = CMetryTest::Flat(50.0f);

    HvMeasureConditions conditions;
    conditions.SetUserDefinedIllumination(lamp);
    EXPECT_EQ(Illumination::Userdefined, conditions.GetIllumination().GetType());
    EXPECT_EQ("Userdefined", ConditionOf(conditions, "Colorimetric.Illumination"));
    EXPECT_EQ(lamp, conditions.GetUserDefinedIllumination());

    const HvMeasureConditions copy = conditions;
    EXPECT_EQ(conditions, copy);
    EXPECT_EQ(&*conditions.GetUserDefinedIlluminationPointer(), &*copy.GetUserDefinedIlluminationPointer());

    HvMeasureConditions sameLamp;
    sameLamp.SetUserDefinedIllumination(lamp);
    EXPECT_NE(conditions, sameLamp);

    conditions.SetCondition("Colorimetric.Illumination", "D50");
    EXPECT_TRUE(conditions.GetUserDefinedIlluminationPointer().IsNull());
    HvMeasureConditions freshD50;
    freshD50.SetCondition("Colorimetric.Illumination", "D50");
    EXPECT_EQ(freshD50, conditions);
    EXPECT_EQ("Failed to dereference nullpointer.",
        FailureText<Utilities::ExceptionNullpointer>([&] { conditions.GetUserDefinedIllumination(); }));
    EXPECT_EQ(lamp, copy.GetUserDefinedIllumination());

    // "Userdefined" by text keeps the spectrum; other types release it.
    HvMeasureConditions again = copy;
    again.SetCondition("Colorimetric.Illumination", "Userdefined");
    EXPECT_EQ(copy, again);
    again.SetIllumination(IlluminationTYPE(Illumination::Emission));
    EXPECT_TRUE(again.GetUserDefinedIlluminationPointer().IsNull());
}

TEST(MeasureConditions, ChannelNamesFollowColorSpaceAndVectorKind)
{
    EXPECT_EQ((std::vector<std::string>{"delta u' 1976", "delta v' 1976", "delta L 1976", ""}),
        ChannelNames("CIEuvY1976", "DeltaVector", 4));
    EXPECT_EQ((std::vector<std::string>{"L*", "a*", "b*"}), ChannelNames("CIELab", "AbsoluteVector", 3));
    EXPECT_EQ((std::vector<std::string>{"delta L*", "delta C*", "delta H*"}), ChannelNames("CIELCh", "DeltaVector", 3));
    EXPECT_EQ((std::vector<std::string>{"L(l)", "a(l)", "b(l)"}), ChannelNames("HunterLab", "AbsoluteVector", 3));
    EXPECT_EQ((std::vector<std::string>{"delta C", "delta M", "delta Y", "delta K", ""}),
        ChannelNames("CMYK", "DeltaVector", 5));
    EXPECT_EQ((std::vector<std::string>{"", ""}), ChannelNames("Undefined", "AbsoluteVector", 2));
}

TEST(MeasureConditions, EnumerationTextsRoundTrip)
{
    for (int number = -1; number <= 1; ++number) {
        const auto observer = static_cast<Observer>(number);
        EXPECT_EQ(observer, ParseObserver(ToString(observer)));
    }
    for (int number = -1; number <= 2; ++number) {
        const auto whiteBase = static_cast<WhiteBase>(number);
        EXPECT_EQ(whiteBase, ParseWhiteBase(ToString(whiteBase)));
    }
    for (int number = -1; number <= 5; ++number) {
        const auto standard = static_cast<DensityStandard>(number);
        EXPECT_EQ(standard, ParseDensityStandard(ToString(standard)));
        const auto mode = static_cast<DensityFilterMode>(number);
        EXPECT_EQ(mode, ParseDensityFilterMode(ToString(mode)));
    }
    EXPECT_EQ("ANSIA", Text(ToString(DensityStandard::ANSIA)));
    EXPECT_EQ("Yellow", Text(ToString(DensityFilterMode::Yellow)));
    EXPECT_EQ("Undefined", Text(ToString(static_cast<DensityStandard>(6))));
}

TEST(MeasureConditions, MessagesAreTranslatedBeforeTheirPlaceholdersAreFilled)
{
    const Utilities::ComponentCreatorSingleton<GermanLanguageService> creator(
        "LanguageService", "$Revision: 1000.0 $", "Utilities");
    HvMeasureConditions conditions;
    EXPECT_EQ("Lab ist kein Farbraum", SetFailure(conditions, "ColorSpaceDescription.Type", "Lab"));
    EXPECT_EQ("Gloss kann nicht gesetzt werden", SetFailure(conditions, "Gloss", "High"));
    EXPECT_EQ("Lab is not a valid observertype", SetFailure(conditions, "Colorimetric.Observer", "Lab"));
}
