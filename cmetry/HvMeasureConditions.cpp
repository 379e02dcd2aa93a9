#include "cmetry/HvMeasureConditions.h"

#include <cstring>

#include "cmetry/ConditionKey.h"
#include "cmetry/ConditionVocabulary.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/TranslatedMessage.h"

namespace CMetry {

using Utilities::Map;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

bool Is(const String& text, const char* literal)
{
    const std::size_t length = std::strlen(literal);
    return text.Length() == length && std::memcmp(text.CString(), literal, length) == 0;
}

const HvSpectrum* AddressOf(const SmartPointer<HvSpectrum>& spectrum)
{
    return spectrum.IsNull() ? nullptr : &*spectrum;
}

String WavelengthText(uint16_t wavelength)
{
    return String(static_cast<unsigned long>(wavelength)) + String("nm");
}

// The failure of a value that is no keyword of its list.
void CheckKeyword(const String& value, bool isKeyword, const char* failure)
{
    if (!isKeyword) {
        throw ExceptionCMetry(TranslatedMessage(failure, "%VALUE%", value));
    }
}

}

// Every new object starts with the one set of default values, copied at its first change.
HvMeasureConditions::HvMeasureConditions()
{
    static const std::shared_ptr<Values> defaults = std::make_shared<Values>();
    values = defaults;
}

HvMeasureConditions::HvMeasureConditions(const HvMeasureConditions& other) = default;

HvMeasureConditions& HvMeasureConditions::operator=(const HvMeasureConditions& other) = default;

HvMeasureConditions::~HvMeasureConditions() = default;

// Only this object can take a new share of values it alone holds, so a count of 1 stays 1 here.
HvMeasureConditions::Values& HvMeasureConditions::Writable()
{
    if (values.use_count() != 1) {
        values = std::make_shared<Values>(*values);
    }
    return *values;
}

void HvMeasureConditions::SetCondition(const String& key, const String& value)
{
    if (Is(key, ConditionKey::physicalFilter)) {
        const PhysicalFilter parsed = ParsePhysicalFilter(value);
        Writable().physicalFilter = parsed;
        return;
    }
    if (SetEnumeratedCondition(key, value) || SetTextCondition(key, value)) {
        return;
    }
    if (Is(key, ConditionKey::numberOfDataPoints) || Is(key, ConditionKey::wavelengthMaximum) ||
        Is(key, ConditionKey::wavelengthMinimum)) {
        return;
    }
    if (Is(key, ConditionKey::customCondition) || AreCustomConditionsEnabled()) {
        Writable().customConditions[key] = value;
        return;
    }
    throw ExceptionCMetry(TranslatedMessage("Modification not supported for key: %KEY%", "%KEY%", key));
}

void HvMeasureConditions::SetCondition(const Map<String, String>& conditions)
{
    for (auto entry = conditions.Begin(); entry.IsValid(); ++entry) {
        SetCondition(entry.Key(), entry.Value());
    }
}

bool HvMeasureConditions::SetEnumeratedCondition(const String& key, const String& value)
{
    if (Is(key, ConditionKey::observer)) {
        SetObserver(ParseObserver(value));
    } else if (Is(key, ConditionKey::illumination)) {
        SetIllumination(ParseIllumination(value));
    } else if (Is(key, ConditionKey::whiteBase)) {
        SetWhiteBase(ParseWhiteBase(value));
    } else if (Is(key, ConditionKey::densityStandard)) {
        const DensityStandard parsed = ParseDensityStandard(value);
        Writable().densityStandard = parsed;
    } else if (Is(key, ConditionKey::densityFilterMode)) {
        const DensityFilterMode parsed = ParseDensityFilterMode(value);
        Writable().densityFilterMode = parsed;
    } else {
        return false;
    }
    return true;
}

bool HvMeasureConditions::SetTextCondition(const String& key, const String& value)
{
    if (Is(key, ConditionKey::colorSpace)) {
        CheckKeyword(value, ConditionVocabulary::IsColorSpace(value), "%VALUE% is not a valid color space");
        Writable().colorSpace = value;
    } else if (Is(key, ConditionKey::absoluteOrDeltaVector)) {
        CheckKeyword(value, ConditionVocabulary::IsAbsoluteOrDeltaVector(value),
            "%VALUE% is not valid for absolute or relative vectors");
        Writable().absoluteOrDeltaVector = value;
    } else if (Is(key, ConditionKey::deltaEFormula)) {
        CheckKeyword(value, ConditionVocabulary::IsDeltaEFormula(value), "%VALUE% is not a valid delta E formula");
        Writable().deltaEFormula = value;
    } else {
        return false;
    }
    return true;
}

String HvMeasureConditions::GetCondition(const String& key) const
{
    String value;
    if (GetEnumeratedCondition(key, value)) {
        return value;
    }
    if (Is(key, ConditionKey::colorSpace)) {
        return values->colorSpace;
    }
    if (Is(key, ConditionKey::absoluteOrDeltaVector)) {
        return values->absoluteOrDeltaVector;
    }
    if (Is(key, ConditionKey::deltaEFormula)) {
        return values->deltaEFormula;
    }
    if (AreCustomConditionsEnabled()) {
        auto entry = values->customConditions.Find(key);
        if (entry.IsValid()) {
            return entry.Value();
        }
    }
    return String("Undefined");
}

bool HvMeasureConditions::GetEnumeratedCondition(const String& key, String& value) const
{
    if (Is(key, ConditionKey::physicalFilter)) {
        value = ToString(values->physicalFilter);
    } else if (Is(key, ConditionKey::numberOfDataPoints)) {
        value = String(static_cast<unsigned long>(numberOfDataPoints));
    } else if (Is(key, ConditionKey::wavelengthMaximum)) {
        value = WavelengthText(wavelengthMaximum);
    } else if (Is(key, ConditionKey::wavelengthMinimum)) {
        value = WavelengthText(wavelengthMinimum);
    } else if (Is(key, ConditionKey::observer)) {
        value = ToString(values->observer);
    } else if (Is(key, ConditionKey::illumination)) {
        value = ToString(values->illumination);
    } else if (Is(key, ConditionKey::whiteBase)) {
        value = ToString(values->whiteBase);
    } else if (Is(key, ConditionKey::densityStandard)) {
        value = ToString(values->densityStandard);
    } else if (Is(key, ConditionKey::densityFilterMode)) {
        value = ToString(values->densityFilterMode);
    } else {
        return false;
    }
    return true;
}

bool HvMeasureConditions::AreCustomConditionsEnabled() const
{
    auto entry = values->customConditions.Find(String(ConditionKey::customCondition));
    return entry.IsValid() && Is(entry.Value(), "Enable");
}

// Objects that share their values are equal without a look at them.
bool HvMeasureConditions::operator==(const HvMeasureConditions& other) const
{
    if (values == other.values) {
        return true;
    }
    const Values& mine = *values;
    const Values& theirs = *other.values;
    return !(mine.colorSpace != theirs.colorSpace) && mine.illumination == theirs.illumination &&
        mine.observer == theirs.observer && mine.whiteBase == theirs.whiteBase &&
        mine.densityStandard == theirs.densityStandard && mine.densityFilterMode == theirs.densityFilterMode &&
        !(mine.deltaEFormula != theirs.deltaEFormula) && mine.physicalFilter == theirs.physicalFilter &&
        !(mine.absoluteOrDeltaVector != theirs.absoluteOrDeltaVector) &&
        AddressOf(mine.userDefinedIllumination) == AddressOf(theirs.userDefinedIllumination);
}

Utilities::Vector<String> HvMeasureConditions::GetValidValues(const String& key)
{
    return ConditionVocabulary::GetValidValues(key);
}

String HvMeasureConditions::GetChannelName(uint16_t index) const
{
    return ConditionVocabulary::GetChannelName(
        values->colorSpace, Is(values->absoluteOrDeltaVector, "DeltaVector"), index);
}

void HvMeasureConditions::SetIllumination(const IlluminationTYPE& value)
{
    Values& writable = Writable();
    writable.illumination = value;
    if (value.GetType() != Illumination::Userdefined) {
        writable.userDefinedIllumination = SmartPointer<HvSpectrum>();
    }
}

void HvMeasureConditions::SetObserver(Observer value)
{
    Writable().observer = value;
}

void HvMeasureConditions::SetWhiteBase(WhiteBase value)
{
    Writable().whiteBase = value;
}

// Results take the filter of their spectrum, which mostly is theirs already: no copy then.
void HvMeasureConditions::CopyPhysicalFilter(const HvMeasureConditions& source)
{
    if (values->physicalFilter != source.values->physicalFilter) {
        Writable().physicalFilter = source.values->physicalFilter;
    }
}

void HvMeasureConditions::SetUserDefinedIllumination(const HvSpectrum& spectrum)
{
    Writable().userDefinedIllumination = SmartPointer<HvSpectrum>(new HvSpectrum(spectrum));
    SetIllumination(IlluminationTYPE(Illumination::Userdefined));
}

HvSpectrum HvMeasureConditions::GetUserDefinedIllumination() const
{
    return *values->userDefinedIllumination;
}

Diagnostics::String HvMeasureConditions::GetValueString() const
{
    Diagnostics::String text("HvMeasureConditions: ");
    text += ToString(values->illumination).CString();
    text += ", ";
    text += ToString(values->observer).CString();
    text += ", ";
    text += ToString(values->whiteBase).CString();
    text += ", ";
    text += values->colorSpace.CString();
    text += ", ";
    text += values->absoluteOrDeltaVector.CString();
    return text;
}

}
