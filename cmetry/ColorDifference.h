#pragma once

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/IlluminationTYPE.h"

namespace CMetry {

// Colour differences between two spectra or two vectors, and the metamerism index of two spectra.
// The first argument is the standard and the second the sample, which matters for the formulas
// that weight by the standard's lightness and chroma (CMC, CIE 1994). Every failure is an
// ExceptionCMetry.
class ColorDifference {
public:
    // By the formula of "ColorSpaceDescription.DeltaEFormula": "CIELab", "LABmg" and "CIELuv" as
    // the Euclidean distance in their space, "FMCII", "CMC" with l = p1 and c = p2, and "94" and
    // "CIEDE2000" with kL, kC, kH = p1, p2, p3. An unknown formula fails with "GetDeltaE not supported for
    // DeltaEFormula " and its keyword; a difference that can't be computed (no paper white under
    // white base "Paper", a black standard under FMC-II, a k of 0) fails with "CMetryCalculator".
    static float GetDeltaE(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
        const HvMeasureConditions& conditions, float p1, float p2, float p3);
    // From two vectors, by the formula of vector1's conditions; "CIELab", "94" and "CIEDE2000" alone.
    static float GetDeltaE(const HvColorVector& vector1, const HvColorVector& vector2, float p1, float p2, float p3);
    // Of two CIELab colours, the standard first, by a formula of "ColorSpaceDescription.DeltaEFormula"
    // that needs nothing but CIELab: "CIELab", "94", "CMC" and "CIEDE2000", the parameters as
    // above. Another formula fails with "GetDeltaE not supported for DeltaEFormula " and its keyword.
    static float GetLabDeltaE(const HvColorVector& lab1, const HvColorVector& lab2, const Utilities::String& formula,
        float p1, float p2, float p3);
    // The CIELab difference under a test illuminant once spectrum2 is corrected, axis by axis, by
    // the ratio of the two tristimulus values under the reference illuminant of the conditions.
    static float GetMetamerismIndex(const HvSpectrum& spectrum1, const HvSpectrum& spectrum2,
        const HvMeasureConditions& conditions, const IlluminationTYPE& illumination);
};

}
