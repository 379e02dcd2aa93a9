#include "cmetry/PrintMetrics.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "cmetry/Density.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/TranslatedMessage.h"
#include "utilities/String.h"

namespace CMetry {

namespace {

constexpr double noDensity = static_cast<double>(0.01f);
constexpr float murrayDavies = 1.0f;

using SpectralDensities = std::array<float, HvSpectrum::numberOfValues>;

bool IsNone(double density)
{
    return std::fabs(density) < noDensity;
}

// Dot area by Yule and Nielsen, TAGA Proc. (1951); n = 1 is Murray and Davies, J. Franklin Inst. (1936).
double Reflected(double density, double n)
{
    return 1.0 - std::pow(10.0, -density / n);
}

// The peak density of the reference and the data point where it lies.
bool PeakOf(const HvSpectrum& reference, float& density, uint16_t& index)
{
    uint16_t wavelength = 0;
    if (!GetPeakDensity(reference, true, density, wavelength)) {
        return false;
    }
    index = reference.GetIndex(wavelength);
    return true;
}

// The density of a spectrum at one data point.
bool SpectralDensityAt(const HvSpectrum& spectrum, bool relative, uint16_t index, float& density)
{
    SpectralDensities densities;
    if (!GetSpectralDensities(spectrum, relative, densities.data())) {
        return false;
    }
    density = densities[index];
    return true;
}

using DensityWay = bool (*)(const HvSpectrum&, DensityStandard, bool, HvDensities&);

bool DensityOf(DensityWay way, const HvSpectrum& spectrum, DensityStandard standard, bool relative,
    DensityFilterMode mode, float& density)
{
    HvDensities densities;
    if (!way(spectrum, standard, relative, densities)) {
        return false;
    }
    density = densities.GetValue(mode);
    return true;
}

// The densities of the solid and the tint: at the solid's peak for "Max", else by the mode.
bool SolidAndTint(DensityWay way, const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard,
    bool relative, DensityFilterMode mode, float& solidDensity, float& tintDensity)
{
    if (mode == DensityFilterMode::Max) {
        uint16_t index = 0;
        return PeakOf(solid, solidDensity, index) && SpectralDensityAt(tint, relative, index, tintDensity);
    }
    return DensityOf(way, solid, standard, relative, mode, solidDensity) &&
        DensityOf(way, tint, standard, relative, mode, tintDensity);
}

bool ColorDensities(
    const HvSpectrum& spectrum, DensityStandard standard, bool relative, bool corrected, std::array<float, 3>& sorted)
{
    HvDensities densities;
    const bool computed = corrected ? GetCorrectedDensities(spectrum, standard, relative, densities)
                                    : GetRawDensities(spectrum, standard, relative, densities);
    if (!computed) {
        return false;
    }
    const DensityValues values = densities.GetValues();
    const std::array<DensityFilterMode, 3> order = SortColorChannels(values);
    for (std::size_t rank = 0; rank < order.size(); ++rank) {
        sorted[rank] = values[static_cast<std::size_t>(order[rank])];
    }
    return true;
}

// Apparent trap: Preucil, TAGA Proc. (1953).
float Trapping(double first, double second, double overprint)
{
    return IsNone(second) ? 1.0f : static_cast<float>((overprint - first) / second);
}

// Standard and filter mode of the conditions; a failure of the area is the failure of the caller.
bool AreaOf(const HvSpectrum& solid, const HvSpectrum& tint, const HvMeasureConditions& conditions, float& area)
{
    return GetDotArea(
        solid, tint, conditions.GetDensityStandard(), conditions.GetDensityFilterMode(), murrayDavies, area);
}

}

bool GetDotArea(const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, DensityFilterMode mode,
    float n, float& out)
{
    float solidDensity = 0.0f;
    float tintDensity = 0.0f;
    if (!SolidAndTint(GetRawDensities, solid, tint, standard, true, mode, solidDensity, tintDensity)) {
        return false;
    }
    const double solidCoverage = Reflected(solidDensity, n);
    out = IsNone(solidCoverage) ? 0.0f : static_cast<float>(Reflected(tintDensity, n) / solidCoverage);
    return true;
}

bool GetDotArea(
    const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, DensityFilterMode mode, float& out)
{
    return GetDotArea(solid, tint, standard, mode, murrayDavies, out);
}

float GetDotGain(const HvSpectrum& tint, const HvSpectrum& solid, const HvMeasureConditions& conditions, float nominal)
{
    float area = 0.0f;
    if (!AreaOf(solid, tint, conditions, area)) {
        throw ExceptionCMetry(TranslatedMessage("Calculation of dot gain failed"));
    }
    return area * 100.0f - nominal;
}

float GetSlur(
    const Utilities::Vector<HvSpectrum>& halftones, const HvSpectrum& solid, const HvMeasureConditions& conditions)
{
    const unsigned long count = halftones.Size();
    if (count < 2) {
        return 0.0f;
    }
    float largest = 0.0f;
    float total = 0.0f;
    for (unsigned long index = 0; index < count; ++index) {
        float area = 0.0f;
        if (!AreaOf(solid, halftones[index], conditions, area)) {
            throw ExceptionCMetry(TranslatedMessage("Calculation of slur failed at Halftone ") +
                Utilities::String(static_cast<long>(index)));
        }
        largest = index == 0 || area > largest ? area : largest;
        total += area;
    }
    return (static_cast<float>(count) * largest - total) * 100.0f;
}

bool GetPrintContrast(const HvSpectrum& solid, const HvSpectrum& tint, DensityStandard standard, bool relative,
    DensityFilterMode mode, float& out)
{
    float solidDensity = 0.0f;
    float tintDensity = 0.0f;
    if (!SolidAndTint(GetCorrectedDensities, solid, tint, standard, relative, mode, solidDensity, tintDensity)) {
        return false;
    }
    out = IsNone(solidDensity) ? 0.0f
                               : static_cast<float>((static_cast<double>(solidDensity) - tintDensity) / solidDensity);
    return true;
}

bool GetTrapping(const HvSpectrum& first, const HvSpectrum& second, const HvSpectrum& overprint,
    DensityStandard standard, DensityFilterMode mode, float& out)
{
    float firstDensity = 0.0f;
    float secondDensity = 0.0f;
    float overprintDensity = 0.0f;
    bool computed = false;
    if (mode == DensityFilterMode::Max) {
        uint16_t index = 0;
        computed = PeakOf(second, secondDensity, index) && SpectralDensityAt(first, true, index, firstDensity) &&
            SpectralDensityAt(overprint, true, index, overprintDensity);
    } else {
        computed = DensityOf(GetRawDensities, first, standard, true, mode, firstDensity) &&
            DensityOf(GetRawDensities, second, standard, true, mode, secondDensity) &&
            DensityOf(GetRawDensities, overprint, standard, true, mode, overprintDensity);
    }
    if (computed) {
        out = Trapping(firstDensity, secondDensity, overprintDensity);
    }
    return computed;
}

bool GetTrapping(const HvDensities& first, const HvDensities& second, const HvDensities& overprint,
    DensityFilterMode mode, float& out)
{
    out = Trapping(first.GetValue(mode), second.GetValue(mode), overprint.GetValue(mode));
    return true;
}

// Grayness and hue error: Preucil, TAGA Proc. (1953).
bool GetGrayness(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& out, bool corrected)
{
    std::array<float, 3> sorted{};
    if (!ColorDensities(spectrum, standard, relative, corrected, sorted)) {
        return false;
    }
    out = IsNone(sorted[0]) ? 1.0f : static_cast<float>(static_cast<double>(sorted[2]) / sorted[0]);
    return true;
}

bool GetHueError(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& out, bool corrected)
{
    std::array<float, 3> sorted{};
    if (!ColorDensities(spectrum, standard, relative, corrected, sorted)) {
        return false;
    }
    out = IsNone(sorted[0]) ? 0.0f
                            : static_cast<float>((static_cast<double>(sorted[1]) - sorted[2]) /
                                  (static_cast<double>(sorted[0]) - sorted[2]));
    return true;
}

}
