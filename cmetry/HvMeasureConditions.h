#pragma once

#include <cstdint>
#include <memory>

#include "cmetry/Enumerations.h"
#include "cmetry/IlluminationTYPE.h"
#include "diagnostics/String.h"
#include "utilities/Map.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace CMetry {

class HvSpectrum;

// One set of conditions under which a colorimetric value holds. From outside it is addressed by
// text keys ("Colorimetric.Illumination" = "D50"); inside it holds numbers and texts. A copy
// shares the user-defined illumination with its original. Copies share one set of values until
// one of them changes, so that every result can carry the conditions it was computed under at the
// price of a reference count.
class HvMeasureConditions {
public:
    // The fixed grid of every spectrum: 36 data points from 380 nm to 730 nm.
    static constexpr uint16_t numberOfDataPoints = 36;
    static constexpr uint16_t wavelengthMinimum = 380;
    static constexpr uint16_t wavelengthMaximum = 730;

    HvMeasureConditions();
    HvMeasureConditions(const HvMeasureConditions& other);
    HvMeasureConditions& operator=(const HvMeasureConditions& other);
    ~HvMeasureConditions();

    // Fails with ExceptionCMetry for a value outside the key's keywords and for a key outside the
    // table while custom conditions are disabled; a failure changes nothing.
    void SetCondition(const Utilities::String& key, const Utilities::String& value);
    // Pair by pair in the map's order; the first failure ends it, earlier pairs stay applied.
    void SetCondition(const Utilities::Map<Utilities::String, Utilities::String>& conditions);
    // "Undefined" for a key that is neither in the table nor an enabled custom condition.
    Utilities::String GetCondition(const Utilities::String& key) const;

    // The custom conditions take no part; the user-defined illumination counts by identity.
    bool operator==(const HvMeasureConditions& other) const;
    bool operator!=(const HvMeasureConditions& other) const { return !(*this == other); }

    static Utilities::Vector<Utilities::String> GetValidValues(const Utilities::String& key);
    // The name of a channel in the colour space of these conditions, of an absolute or a delta
    // vector as they say; the empty text where there is none.
    Utilities::String GetChannelName(uint16_t index) const;

    const IlluminationTYPE& GetIllumination() const { return values->illumination; }
    // Any type but "Userdefined" releases the user-defined illumination.
    void SetIllumination(const IlluminationTYPE& value);
    Observer GetObserver() const { return values->observer; }
    void SetObserver(Observer value);
    WhiteBase GetWhiteBase() const { return values->whiteBase; }
    void SetWhiteBase(WhiteBase value);
    DensityStandard GetDensityStandard() const { return values->densityStandard; }
    DensityFilterMode GetDensityFilterMode() const { return values->densityFilterMode; }
    PhysicalFilter GetPhysicalFilter() const { return values->physicalFilter; }
    void CopyPhysicalFilter(const HvMeasureConditions& source);
    const Utilities::String& GetColorSpace() const { return values->colorSpace; }
    const Utilities::String& GetDeltaEFormula() const { return values->deltaEFormula; }
    const Utilities::String& GetAbsoluteOrDeltaVector() const { return values->absoluteOrDeltaVector; }

    // Keeps a copy of the spectrum and sets the illumination to "Userdefined".
    void SetUserDefinedIllumination(const HvSpectrum& spectrum);
    // A copy of the spectrum; fails with ExceptionNullpointer when none is set.
    HvSpectrum GetUserDefinedIllumination() const;
    // The spectrum itself, for what must tell one user-defined illumination from another.
    const Utilities::SmartPointer<HvSpectrum>& GetUserDefinedIlluminationPointer() const
    {
        return values->userDefinedIllumination;
    }

    Diagnostics::String GetValueString() const;

private:
    bool SetEnumeratedCondition(const Utilities::String& key, const Utilities::String& value);
    bool SetTextCondition(const Utilities::String& key, const Utilities::String& value);
    bool GetEnumeratedCondition(const Utilities::String& key, Utilities::String& value) const;
    bool AreCustomConditionsEnabled() const;

    struct Values {
        IlluminationTYPE illumination{Illumination::D65};
        Observer observer = Observer::TwoDegree;
        WhiteBase whiteBase = WhiteBase::Automatic;
        DensityStandard densityStandard = DensityStandard::DIN;
        DensityFilterMode densityFilterMode = DensityFilterMode::Auto;
        Utilities::String colorSpace{"CIELab"};
        Utilities::String deltaEFormula{"CIELab"};
        PhysicalFilter physicalFilter = PhysicalFilter::No;
        Utilities::String absoluteOrDeltaVector{"AbsoluteVector"};
        // A missing "CustomCondition" counts as "Disable", so a new object and its copies
        // allocate nothing for the custom conditions.
        Utilities::Map<Utilities::String, Utilities::String> customConditions;
        Utilities::SmartPointer<HvSpectrum> userDefinedIllumination;
    };

    // The values of this object alone, copied first if another object shares them.
    Values& Writable();

    std::shared_ptr<Values> values;
};

}
