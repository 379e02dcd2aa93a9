#include "cmetry/ConditionVocabulary.h"

#include <cstring>

#include "cmetry/ConditionKey.h"

namespace CMetry {

using Utilities::String;
using Utilities::Vector;

namespace {

constexpr char endMark[] = "Undefined";

// Each list runs up to its end mark, which is a keyword of its own but no valid value.
constexpr const char* illuminationValues[] = {
    "A", "B", "C", "D50", "D55", "D65", "D75", "Dxx", "F", "Userdefined", "Emission", endMark};
constexpr const char* observerValues[] = {"TwoDegree", "TenDegree", endMark};
constexpr const char* whiteBaseValues[] = {"Absolute", "Paper", "Automatic", endMark};
constexpr const char* densityStandardValues[] = {"DIN", "DINNB", "ANSIA", "ANSIT", "SPI", "User", endMark};
constexpr const char* densityFilterModeValues[] = {"Black", "Cyan", "Magenta", "Yellow", "Max", "Auto", endMark};
constexpr const char* physicalFilterValues[] = {
    "No", "Polarizer", "UVCut", "D65", "Custom", "CalibrationCheck", "ND0", endMark};
constexpr const char* numberOfDataPointsValues[] = {"36", endMark};
constexpr const char* wavelengthMaximumValues[] = {"730nm", endMark};
constexpr const char* wavelengthMinimumValues[] = {"380nm", endMark};
constexpr const char* colorSpaceValues[] = {"CIELab", "CIELCh", "CIELuv", "CIELChuv", "CIEuvY1960", "CIEuvY1976",
    "CIEXYZ", "CIExyY", "HunterLab", "RxRyRz", "LABmg", "LCHmg", "RGB", "CMYK", endMark};
constexpr const char* absoluteOrDeltaVectorValues[] = {"AbsoluteVector", "DeltaVector", endMark};
constexpr const char* deltaEFormulaValues[] = {"CIELab", "CIELuv", "LABmg", "FMCII", "CMC", "94", "CIEDE2000", endMark};

struct ChannelNames {
    const char* colorSpace;
    const char* const* names;
};

// The names of an absolute vector, then those of a delta vector.
constexpr const char* labChannels[] = {"L*", "a*", "b*", "delta L*", "delta a*", "delta b*", endMark};
constexpr const char* lchChannels[] = {"L*", "C*", "h*", "delta L*", "delta C*", "delta H*", endMark};
constexpr const char* luvChannels[] = {"L", "u*", "v*", "delta L", "delta u*", "delta v*", endMark};
constexpr const char* lchuvChannels[] = {"L", "C", "h", "delta L", "delta C", "delta H", endMark};
constexpr const char* uvY1960Channels[] = {
    "u' 1960", "v' 1960", "Y 1960", "delta u' 1960", "delta v' 1960", "delta L 1960", endMark};
constexpr const char* uvY1976Channels[] = {
    "u' 1976", "v' 1976", "Y 1976", "delta u' 1976", "delta v' 1976", "delta L 1976", endMark};
constexpr const char* xyzChannels[] = {"X", "Y", "Z", "delta X", "delta Y", "delta Z", endMark};
constexpr const char* xyYChannels[] = {"x", "y", "Y", "delta x", "delta y", "delta Y", endMark};
constexpr const char* hunterLabChannels[] = {"L(l)", "a(l)", "b(l)", "delta L(l)", "delta a(l)", "delta b(l)", endMark};
constexpr const char* rxRyRzChannels[] = {"Rx", "Ry", "Rz", "delta Rx", "delta Ry", "delta Rz", endMark};
constexpr const char* labMgChannels[] = {
    "L(mg)", "a(mg)", "b(mg)", "delta L(mg)", "delta a(mg)", "delta b(mg)", endMark};
constexpr const char* lchMgChannels[] = {
    "L(mg)", "C(mg)", "h(mg)", "delta L(mg)", "delta C(mg)", "delta H(mg)", endMark};
constexpr const char* rgbChannels[] = {"R", "G", "B", "delta R", "delta G", "delta B", endMark};
constexpr const char* cmykChannels[] = {"C", "M", "Y", "K", "delta C", "delta M", "delta Y", "delta K", endMark};

constexpr ChannelNames channelNames[] = {
    {"CIELab", labChannels},
    {"CIELCh", lchChannels},
    {"CIELuv", luvChannels},
    {"CIELChuv", lchuvChannels},
    {"CIEuvY1960", uvY1960Channels},
    {"CIEuvY1976", uvY1976Channels},
    {"CIEXYZ", xyzChannels},
    {"CIExyY", xyYChannels},
    {"HunterLab", hunterLabChannels},
    {"RxRyRz", rxRyRzChannels},
    {"LABmg", labMgChannels},
    {"LCHmg", lchMgChannels},
    {"RGB", rgbChannels},
    {"CMYK", cmykChannels},
};

bool IsEndMark(const char* keyword)
{
    return std::strcmp(keyword, endMark) == 0;
}

unsigned long CountUpToEndMark(const char* const* keywords)
{
    unsigned long count = 0;
    while (!IsEndMark(keywords[count])) {
        ++count;
    }
    return count;
}

// A linear search that takes in the end mark as well.
bool IsInList(const char* const* keywords, const String& text)
{
    for (unsigned long index = 0;; ++index) {
        if (text == String(keywords[index])) {
            return true;
        }
        if (IsEndMark(keywords[index])) {
            return false;
        }
    }
}

}

ConditionVocabulary::ConditionVocabulary()
{
    Enter(ConditionKey::illumination, illuminationValues);
    Enter(ConditionKey::observer, observerValues);
    Enter(ConditionKey::whiteBase, whiteBaseValues);
    Enter(ConditionKey::densityStandard, densityStandardValues);
    Enter(ConditionKey::densityFilterMode, densityFilterModeValues);
    Enter(ConditionKey::physicalFilter, physicalFilterValues);
    Enter(ConditionKey::numberOfDataPoints, numberOfDataPointsValues);
    Enter(ConditionKey::wavelengthMaximum, wavelengthMaximumValues);
    Enter(ConditionKey::wavelengthMinimum, wavelengthMinimumValues);
    Enter(ConditionKey::colorSpace, colorSpaceValues);
    Enter(ConditionKey::absoluteOrDeltaVector, absoluteOrDeltaVectorValues);
    Enter(ConditionKey::deltaEFormula, deltaEFormulaValues);
    for (const ChannelNames& channels : channelNames) {
        const String key = String(ConditionKey::channelNamesPrefix) + String(channels.colorSpace);
        Enter(key.CString(), channels.names);
    }
}

ConditionVocabulary& ConditionVocabulary::Instance()
{
    static ConditionVocabulary vocabulary;
    return vocabulary;
}

void ConditionVocabulary::Enter(const char* key, const char* const* keywords)
{
    Vector<String> list(CountUpToEndMark(keywords));
    for (unsigned long index = 0; index < list.Size(); ++index) {
        list[index] = String(keywords[index]);
    }
    table[String(key)] = list;
}

Vector<String> ConditionVocabulary::GetValidValues(const String& key)
{
    ConditionVocabulary& vocabulary = Instance();
    std::lock_guard<std::mutex> lock(vocabulary.mutex);
    auto entry = vocabulary.table.Find(key);
    if (entry.IsValid()) {
        return entry.Value();
    }
    const Vector<String> empty(0);
    vocabulary.table[key] = empty;
    return empty;
}

String ConditionVocabulary::GetChannelName(const String& colorSpace, bool deltaVector, uint16_t index)
{
    ConditionVocabulary& vocabulary = Instance();
    std::lock_guard<std::mutex> lock(vocabulary.mutex);
    auto entry = vocabulary.table.Find(String(ConditionKey::channelNamesPrefix) + colorSpace);
    if (!entry.IsValid()) {
        return String();
    }
    const Vector<String>& names = entry.Value();
    const unsigned long channelCount = names.Size() / 2;
    if (index >= channelCount) {
        return String();
    }
    return names[deltaVector ? channelCount + index : index];
}

bool ConditionVocabulary::IsColorSpace(const String& text)
{
    return IsInList(colorSpaceValues, text);
}

bool ConditionVocabulary::IsAbsoluteOrDeltaVector(const String& text)
{
    return IsInList(absoluteOrDeltaVectorValues, text);
}

bool ConditionVocabulary::IsDeltaEFormula(const String& text)
{
    return IsInList(deltaEFormulaValues, text);
}

}
