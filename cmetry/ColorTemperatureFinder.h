#pragma once

#include "cmetry/HvSpectrum.h"

namespace CMetry {

class BlackBody;
class HvColorVector;

// The temperature of the black body whose chromaticity lies nearest to that of a spectrum in the
// CIE 1960 uv diagram: a golden-section search along the Planckian locus on the reciprocal
// temperature scale, with every trial a black-body spectrum taken through the emission weights.
class ColorTemperatureFinder {
public:
    // From 200 K to 1000000 K, to within 0.5 K.
    ColorTemperatureFinder();
    // Lowest temperature, highest temperature and tolerance, in kelvin.
    explicit ColorTemperatureFinder(const float (&limits)[3]);

    // A whole number of kelvin; either end of the range is a result like any other. Fails with
    // ExceptionCMetry "Calculation of ColorTemperature failed" when the spectrum or a black body
    // has no chromaticity, or the best point left the range.
    float GetColorTemperature(const HvSpectrum& spectrum) const;

private:
    float lowestTemperature;
    float highestTemperature;
    float tolerance;
};

}
