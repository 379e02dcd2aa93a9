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

// The value stored when it is a keyword of its list, else the failure of that list.
void StoreKeyword(String& target, const String& value, bool isKeyword, const char* failure)
{
    if (!isKeyword) {
        throw ExceptionCMetry(TranslatedMessage(failure, "%VALUE%", value));
    }
    target = value;
}

}

HvMeasureConditions::HvMeasureConditions()
    : illumination(Illumination::D65), observer(Observer::TwoDegree), whiteBase(WhiteBase::Automatic),
      densityStandard(DensityStandard::DIN), densityFilterMode(DensityFilterMode::Auto), colorSpace("CIELab"),
      deltaEFormula("CIELab"), physicalFilter(PhysicalFilter::No), absoluteOrDeltaVector("AbsoluteVector")
{
}

HvMeasureConditions::HvMeasureConditions(const HvMeasureConditions& other) = default;

HvMeasureConditions& HvMeasureConditions::operator=(const HvMeasureConditions& other) = default;

HvMeasureConditions::~HvMeasureConditions() = default;

void HvMeasureConditions::SetCondition(const String& key, const String& value)
{
    if (Is(key, ConditionKey::physicalFilter)) {
        physicalFilter = ParsePhysicalFilter(value);
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
        customConditions[key] = value;
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
        observer = ParseObserver(value);
    } else if (Is(key, ConditionKey::illumination)) {
        SetIllumination(ParseIllumination(value));
    } else if (Is(key, ConditionKey::whiteBase)) {
        whiteBase = ParseWhiteBase(value);
    } else if (Is(key, ConditionKey::densityStandard)) {
        densityStandard = ParseDensityStandard(value);
    } else if (Is(key, ConditionKey::densityFilterMode)) {
        densityFilterMode = ParseDensityFilterMode(value);
    } else {
        return false;
    }
    return true;
}

bool HvMeasureConditions::SetTextCondition(const String& key, const String& value)
{
    if (Is(key, ConditionKey::colorSpace)) {
        StoreKeyword(colorSpace, value, ConditionVocabulary::IsColorSpace(value), "%VALUE% is not a valid color space");
    } else if (Is(key, ConditionKey::absoluteOrDeltaVector)) {
        StoreKeyword(absoluteOrDeltaVector, value, ConditionVocabulary::IsAbsoluteOrDeltaVector(value),
            "%VALUE% is not valid for absolute or relative vectors");
    } else if (Is(key, ConditionKey::deltaEFormula)) {
        StoreKeyword(deltaEFormula, value, ConditionVocabulary::IsDeltaEFormula(value),
            "%VALUE% is not a valid delta E formula");
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
        return colorSpace;
    }
    if (Is(key, ConditionKey::absoluteOrDeltaVector)) {
        return absoluteOrDeltaVector;
    }
    if (Is(key, ConditionKey::deltaEFormula)) {
        return deltaEFormula;
    }
    if (AreCustomConditionsEnabled()) {
        auto entry = customConditions.Find(key);
        if (entry.IsValid()) {
            return entry.Value();
        }
    }
    return String("Undefined");
}

bool HvMeasureConditions::GetEnumeratedCondition(const String& key, String& value) const
{
    if (Is(key, ConditionKey::physicalFilter)) {
        value = ToString(physicalFilter);
    } else if (Is(key, ConditionKey::numberOfDataPoints)) {
        value = String(static_cast<unsigned long>(numberOfDataPoints));
    } else if (Is(key, ConditionKey::wavelengthMaximum)) {
        value = WavelengthText(wavelengthMaximum);
    } else if (Is(key, ConditionKey::wavelengthMinimum)) {
        value = WavelengthText(wavelengthMinimum);
    } else if (Is(key, ConditionKey::observer)) {
        value = ToString(observer);
    } else if (Is(key, ConditionKey::illumination)) {
        value = ToString(illumination);
    } else if (Is(key, ConditionKey::whiteBase)) {
        value = ToString(whiteBase);
    } else if (Is(key, ConditionKey::densityStandard)) {
        value = ToString(densityStandard);
    } else if (Is(key, ConditionKey::densityFilterMode)) {
        value = ToString(densityFilterMode);
    } else {
        return false;
    }
    return true;
}

bool HvMeasureConditions::AreCustomConditionsEnabled() const
{
    auto entry = customConditions.Find(String(ConditionKey::customCondition));
    return entry.IsValid() && Is(entry.Value(), "Enable");
}

bool HvMeasureConditions::operator==(const HvMeasureConditions& other) const
{
    return !(colorSpace != other.colorSpace) && illumination == other.illumination && observer == other.observer &&
        whiteBase == other.whiteBase && densityStandard == other.densityStandard &&
        densityFilterMode == other.densityFilterMode && !(deltaEFormula != other.deltaEFormula) &&
        physicalFilter == other.physicalFilter && !(absoluteOrDeltaVector != other.absoluteOrDeltaVector) &&
        AddressOf(userDefinedIllumination) == AddressOf(other.userDefinedIllumination);
}

Utilities::Vector<String> HvMeasureConditions::GetValidValues(const String& key)
{
    return ConditionVocabulary::GetValidValues(key);
}

String HvMeasureConditions::GetChannelName(uint16_t index) const
{
    return ConditionVocabulary::GetChannelName(colorSpace, Is(absoluteOrDeltaVector, "DeltaVector"), index);
}

void HvMeasureConditions::SetIllumination(const IlluminationTYPE& value)
{
    illumination = value;
    if (value.GetType() != Illumination::Userdefined) {
        userDefinedIllumination = SmartPointer<HvSpectrum>();
    }
}

void HvMeasureConditions::SetUserDefinedIllumination(const HvSpectrum& spectrum)
{
    userDefinedIllumination = SmartPointer<HvSpectrum>(new HvSpectrum(spectrum));
    SetIllumination(IlluminationTYPE(Illumination::Userdefined));
}

HvSpectrum HvMeasureConditions::GetUserDefinedIllumination() const
{
    return *userDefinedIllumination;
}

Diagnostics::String HvMeasureConditions::GetValueString() const
{
    Diagnostics::String text("HvMeasureConditions: ");
    text += ToString(illumination).CString();
    text += ", ";
    text += ToString(observer).CString();
    text += ", ";
    text += ToString(whiteBase).CString();
    text += ", ";
    text += colorSpace.CString();
    text += ", ";
    text += absoluteOrDeltaVector.CString();
    return text;
}

}
