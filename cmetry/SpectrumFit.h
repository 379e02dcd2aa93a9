#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvSpectrum.h"

namespace CMetry {

// A reflectance spectrum of values from 0 to 1 with the colour of a CIELab vector under its
// conditions. Since the tristimulus values are linear in the data points, the fit moves one data
// point at a time, always the one whose contribution points most nearly along the remaining error,
// until the colour agrees. It looks for some spectrum of the right colour, not the likeliest: the
// result is often jagged.
class SpectrumFit {
public:
    // lab is a "CIELab" vector; the fit works under its conditions.
    SpectrumFit(const HvColorVector& lab, double tolerance, bool useCIE94, int32_t maximumSteps);

    // True when the colour of out is within the tolerance of lab, by CIE 1994 with all k of 1 or
    // by the CIELab distance; false when the error stops shrinking or the steps run out. out holds
    // the last spectrum in either case.
    bool Run(HvSpectrum& out);
    // The steps the last Run took.
    int32_t GetSteps() const { return steps; }

    // The spectrum of a colour in any colour space that converts to CIELab, fitted to within 0.1
    // in at most 1000 steps. A colour that no reflectance reaches fails with ExceptionCMetry
    // "CMetryCalculator: Conversion out of Range".
    static HvSpectrum GetSpectrum(const HvColorVector& vector);

private:
    using Tristimulus = std::array<float, 3>;

    bool TakeContributions();
    bool UpdateResidual();
    int BestDataPoint(double& cosine) const;
    void Move(int index, double cosine);
    bool IsWithinTolerance() const;

    HvColorVector lab;
    double tolerance;
    bool useCIE94;
    int32_t maximumSteps;
    int32_t steps;
    std::array<Tristimulus, HvSpectrum::numberOfValues> contributions;
    std::array<float, HvSpectrum::numberOfValues> contributionLengths;
    Tristimulus target;
    HvSpectrum current;
    HvColorVector currentXYZ;
    Tristimulus residual;
    float residualLength;
};

// The fit of SpectrumFit with its parameters; out is written in every case.
bool FitSpectrum(const HvColorVector& lab, HvSpectrum& out, double tolerance, bool useCIE94, int32_t maximumSteps);

}
