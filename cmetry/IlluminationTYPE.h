#pragma once

#include <cstdint>

#include "cmetry/Enumerations.h"
#include "utilities/String.h"

namespace CMetry {

// An illumination with what some types need besides the number: the F value of type F and the
// colour temperature of type Dxx. Both stay 0 for the other types.
class IlluminationTYPE {
public:
    IlluminationTYPE();
    explicit IlluminationTYPE(Illumination type);

    // Any of F1 to F12 by its number (type F).
    static IlluminationTYPE Fluorescent(uint8_t fValue);
    // Daylight computed for a colour temperature in kelvin (type Dxx).
    static IlluminationTYPE Daylight(int16_t colorTemperature);

    Illumination GetType() const { return type; }
    uint8_t GetFValue() const { return fValue; }
    int16_t GetColorTemperature() const { return colorTemperature; }

    // Every field counts, also for types that use neither F value nor temperature.
    bool operator==(const IlluminationTYPE& other) const;
    bool operator!=(const IlluminationTYPE& other) const { return !(*this == other); }

private:
    uint8_t fValue;
    int16_t colorTemperature;
    Illumination type;
};

// "A", "D65", "F7", "F3", "Dxx, Temperature:5000", "Userdefined", ...; "Undefined" for a type
// without a keyword.
Utilities::String ToString(const IlluminationTYPE& illumination);
// Fails with ExceptionCMetry "... is not a valid illuminationtype".
IlluminationTYPE ParseIllumination(const Utilities::String& text);

}
