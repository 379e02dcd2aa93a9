#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/IlluminationTYPE.h"
#include "utilities/String.h"

namespace CMetry {

// The front of the colorimetry: colour vectors of spectra and conversions between colour spaces.
// It keeps no state of its own; the weights and the paper white it leans on are process-wide.
// Every failure is an ExceptionCMetry.
class CMetryCalculator {
public:
    // The vector in the colour space that "ColorSpaceDescription.Type" of the conditions names.
    // A colour space without a way fails with "GetVector not supported for ColorSpace " and its
    // keyword; white base "Paper" without a paper white fails with "CMetryCalculator".
    static HvColorVector GetVector(const HvSpectrum& spectrum, const HvMeasureConditions& conditions);

    // The vector in another colour space; only the ways from XYZ and CIELab forward exist, and
    // any other pair fails naming both spaces. The fourth channel is dropped.
    static HvColorVector Convert(const HvColorVector& vector, const Utilities::String& targetColorSpace);

    // Delta L, delta C and the signed delta H of two vectors in "CIELab", "CIELuv" or "LABmg",
    // typed "CIELCh", "CIELChuv" or "LCHmg"; another colour space fails with "CMetryCalculator".
    static HvColorVector GetDeltaVector(const HvColorVector& vector1, const HvColorVector& vector2);

    // Colour differences, the colour temperature and the spectrum of a colour are told beside
    // their own classes; the front answers them as it answers the rest.
    static float GetDeltaE(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
        const HvMeasureConditions& conditions, float p1, float p2, float p3);
    static float GetDeltaE(const HvColorVector& vector1, const HvColorVector& vector2, float p1, float p2, float p3);
    static float GetMetamerismIndex(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
        const HvMeasureConditions& conditions, const IlluminationTYPE& illumination);
    static float GetColorTemperature(const HvSpectrum& spectrum);
    static HvSpectrum GetSpectrum(const HvColorVector& vector);
};

}
