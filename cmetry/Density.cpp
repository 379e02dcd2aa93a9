#include "cmetry/Density.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "cmetry/DensityCorrection.h"
#include "cmetry/ExceptionCMetry.h"
#include "cmetry/PaperWhite.h"
#include "cmetry/TranslatedMessage.h"
#include "utilities/ExceptionOutOfBound.h"

namespace CMetry {

using Utilities::SmartPointer;

namespace {

// The black filter sums to 100 where the colour filters sum to 1.
constexpr float visualFilterOffset = 2.0f;
constexpr double selectionFloor = 0.01;
constexpr double neutralRatio = 0.7;
constexpr uint16_t peakSearchFirst = 410;
constexpr uint16_t peakSearchLast = 700;
constexpr float peakSearchStart = 9999.0f;

// Optical density D = −log10 ρ: ISO 5-1:2009.
float DensityOf(double reflectance)
{
    return reflectance > 0.0 ? static_cast<float>(-std::log10(reflectance)) : densityWithoutLight;
}

bool HasFilters(DensityStandard standard)
{
    return standard >= DensityStandard::DIN && standard <= DensityStandard::User;
}

void AbsoluteDensities(const float* values, const DensityFilterSet& filters, DensityValues& densities)
{
    for (uint16_t channel = 0; channel < DensityFilterSet::numberOfChannels; ++channel) {
        const float* weights = filters.GetFilter(channel).GetValues();
        double filtered = 0.0;
        for (uint16_t index = 0; index < HvSpectrum::numberOfValues; ++index) {
            filtered += static_cast<double>(weights[index]) * values[index];
        }
        densities[channel] = DensityOf(filtered);
    }
    densities[0] += visualFilterOffset;
}

using SpectrumValues = std::array<float, HvSpectrum::numberOfValues>;

bool PaperWhiteValues(const HvMeasureConditions& conditions, SpectrumValues& paperWhite)
{
    return HasPaperWhite(conditions) && GetPaperWhiteValues(paperWhite.data());
}

bool RawDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, DensityValues& densities,
    SmartPointer<const DensityFilterSet>& filters)
{
    if (!HasFilters(standard)) {
        return false;
    }
    filters = DensityFilterSet::ForStandard(standard);
    AbsoluteDensities(spectrum.GetValues(), *filters, densities);
    if (!relative) {
        return true;
    }
    SpectrumValues paperWhite;
    if (!PaperWhiteValues(spectrum.Conditions(), paperWhite)) {
        return false;
    }
    DensityValues paperDensities;
    AbsoluteDensities(paperWhite.data(), *filters, paperDensities);
    for (uint16_t channel = 0; channel < DensityFilterSet::numberOfChannels; ++channel) {
        densities[channel] -= paperDensities[channel];
    }
    return true;
}

bool CorrectedDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, DensityValues& densities,
    SmartPointer<const DensityFilterSet>& filters)
{
    if (!RawDensities(spectrum, standard, relative, densities, filters)) {
        return false;
    }
    DensityCorrection::Apply(spectrum.Conditions().GetPhysicalFilter(), standard, relative, densities);
    return true;
}

float DensityOfChannel(const DensityValues& densities, DensityFilterMode channel)
{
    const auto index = static_cast<std::size_t>(channel);
    if (index >= densities.size()) {
        throw Utilities::ExceptionOutOfBound("vector index >= vector size");
    }
    return densities[index];
}

// A paper white that is set counts here even without a signal; that case fails later, as a
// density that can't be computed.
bool IsPaperWhiteSet()
{
    SpectrumValues paperWhite;
    return GetPaperWhiteValues(paperWhite.data());
}

bool IsFixedChannel(DensityFilterMode mode)
{
    return mode >= DensityFilterMode::Black && mode <= DensityFilterMode::Yellow;
}

// Steps shared by GetDensity and GetDensityFilter: the density the conditions ask for and the
// channel it was read through.
DensityFilterMode DensityOfConditions(const HvSpectrum& spectrum, const HvMeasureConditions& conditions, float& density)
{
    const WhiteBase whiteBase = conditions.GetWhiteBase();
    if ((whiteBase == WhiteBase::Paper || whiteBase == WhiteBase::Automatic) && !IsPaperWhiteSet()) {
        throw ExceptionCMetry(TranslatedMessage("Missing WhiteReference"));
    }
    DensityFilterMode channel = conditions.GetDensityFilterMode();
    const bool automatic = !IsFixedChannel(channel);
    GetDensityValue(
        spectrum, conditions.GetDensityStandard(), whiteBase != WhiteBase::Absolute, density, channel, automatic);
    return channel;
}

bool RelativeValues(const HvSpectrum& spectrum, bool relative, SpectrumValues& values)
{
    std::copy(spectrum.GetValues(), spectrum.GetValues() + HvSpectrum::numberOfValues, values.begin());
    return !relative || DivideByPaperWhite(spectrum.Conditions(), values.data());
}

}

bool GetRawDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, HvDensities& out)
{
    DensityValues densities;
    SmartPointer<const DensityFilterSet> filters;
    if (!RawDensities(spectrum, standard, relative, densities, filters)) {
        return false;
    }
    out = HvDensities(densities, filters, standard, spectrum.Conditions());
    return true;
}

bool GetCorrectedDensities(const HvSpectrum& spectrum, DensityStandard standard, bool relative, HvDensities& out)
{
    DensityValues densities;
    SmartPointer<const DensityFilterSet> filters;
    if (!CorrectedDensities(spectrum, standard, relative, densities, filters)) {
        return false;
    }
    out = HvDensities(densities, filters, standard, spectrum.Conditions());
    return true;
}

std::array<DensityFilterMode, 3> SortColorChannels(const DensityValues& densities)
{
    std::array<DensityFilterMode, 3> channels = {
        DensityFilterMode::Cyan, DensityFilterMode::Magenta, DensityFilterMode::Yellow};
    std::stable_sort(channels.begin(), channels.end(), [&densities](DensityFilterMode left, DensityFilterMode right) {
        return densities[static_cast<std::size_t>(left)] > densities[static_cast<std::size_t>(right)];
    });
    return channels;
}

DensityFilterMode SelectFilter(const DensityValues& densities)
{
    std::size_t highest = 0;
    for (std::size_t channel = 1; channel < densities.size(); ++channel) {
        if (densities[channel] > densities[highest]) {
            highest = channel;
        }
    }
    const std::array<DensityFilterMode, 3> sorted = SortColorChannels(densities);
    const double high = densities[static_cast<std::size_t>(sorted.front())];
    const double low = densities[static_cast<std::size_t>(sorted.back())];
    const double ratio = std::fabs(high) >= selectionFloor ? low / high : 1.0;
    if (densities[highest] < selectionFloor || ratio > neutralRatio) {
        return DensityFilterMode::Black;
    }
    return static_cast<DensityFilterMode>(highest);
}

DensityFilterMode SelectFilter(const HvDensities& densities)
{
    return SelectFilter(densities.GetValues());
}

bool GetDensityValue(const HvSpectrum& spectrum, DensityStandard standard, bool relative, float& density,
    DensityFilterMode& channel, bool automatic)
{
    DensityValues densities;
    SmartPointer<const DensityFilterSet> filters;
    if (!CorrectedDensities(spectrum, standard, relative, densities, filters)) {
        density = densityWithoutLight;
        channel = DensityFilterMode::Undefined;
        return false;
    }
    if (automatic) {
        channel = SelectFilter(densities);
    }
    density = DensityOfChannel(densities, channel);
    return true;
}

bool GetSpectralDensities(const HvSpectrum& spectrum, bool relative, float* densities)
{
    SpectrumValues values;
    if (!RelativeValues(spectrum, relative, values)) {
        return false;
    }
    for (uint16_t index = 0; index < HvSpectrum::numberOfValues; ++index) {
        densities[index] = DensityOf(values[index]);
    }
    return true;
}

bool GetPeakDensity(const HvSpectrum& spectrum, bool relative, float& density, uint16_t& wavelength)
{
    SpectrumValues values;
    if (!RelativeValues(spectrum, relative, values)) {
        return false;
    }
    const int middle = HvSpectrum::numberOfValues / 2 - 1;
    int lowestIndex = middle;
    float lowest = peakSearchStart;
    for (int index = spectrum.GetIndex(peakSearchFirst); index <= spectrum.GetIndex(peakSearchLast); ++index) {
        const float value = values[static_cast<std::size_t>(index)];
        if (value < lowest || (value == lowest && std::abs(index - middle) < std::abs(lowestIndex - middle))) {
            lowest = value;
            lowestIndex = index;
        }
    }
    density = DensityOf(lowest);
    wavelength = spectrum.GetWavelength(static_cast<uint16_t>(lowestIndex));
    return true;
}

float GetDensity(const HvSpectrum& spectrum, const HvMeasureConditions& conditions)
{
    float density = densityWithoutLight;
    DensityOfConditions(spectrum, conditions, density);
    if (density == densityWithoutLight) {
        throw ExceptionCMetry(TranslatedMessage("Calculation of Density failed"));
    }
    return density;
}

Utilities::String GetDensityFilter(const HvSpectrum& spectrum, const HvMeasureConditions& conditions)
{
    float density = densityWithoutLight;
    return ToString(DensityOfConditions(spectrum, conditions, density));
}

}
