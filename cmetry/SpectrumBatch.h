#pragma once

#include <array>
#include <span>

#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"
#include "cmetry/Weightfactors.h"
#include "utilities/SmartPointer.h"

namespace CMetry {

// The colour values of many spectra under one set of conditions, each exactly what the spectrum
// alone gives through CMetryCalculator (taken with these conditions as its own). The spectra lie
// one after another, 36 values each; the results likewise, three values each. The conditions and
// their weights are resolved once, for every call; the paper white is read once per call.
// Failures are those of the single spectrum: ExceptionCMetry "CMetryCalculator" when white base
// "Paper" finds no paper white, with nothing written.
class SpectrumBatch {
public:
    static constexpr std::size_t valuesPerSpectrum = HvSpectrum::numberOfValues;
    static constexpr std::size_t valuesPerResult = 3;

    explicit SpectrumBatch(const HvMeasureConditions& conditions);

    void GetXYZ(std::span<const float> spectra, std::span<float> xyz) const;
    void GetLab(std::span<const float> spectra, std::span<float> lab) const;
    // In the colour space of the conditions; CIEXYZ, CIELab and CIELCh on the batch's own way,
    // the others spectrum by spectrum.
    void GetVectors(std::span<const float> spectra, std::span<float> vectors) const;
    // One density per spectrum, as GetDensity gives it.
    void GetDensities(std::span<const float> spectra, std::span<float> densities) const;
    // ΔE of each spectrum against the reference, by the formula of the conditions.
    void GetDeltaE(const float* reference, std::span<const float> spectra, std::span<float> deltaE,
        std::array<float, 3> parameters = {1.0f, 1.0f, 1.0f}) const;

private:
    using Values = std::array<float, valuesPerSpectrum>;

    // The values the weights see: the spectrum divided by the paper white where the white base says so.
    const float* Relative(const float* spectrum, const Values& paperWhite, Values& relative) const;
    Values PaperWhite() const;
    void Check(std::span<const float> spectra, std::span<float> results, std::size_t perResult) const;
    HvSpectrum SpectrumAt(std::span<const float> spectra, std::size_t index) const;

    HvMeasureConditions conditions;
    HvMeasureConditions effective;
    bool dividedByPaperWhite;
    Utilities::SmartPointer<const Weightfactors> weightfactors;
};

}
