#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "cmetry/CieTables.h"
#include "cmetry/Enumerations.h"
#include "cmetry/IlluminationTYPE.h"

namespace CMetry {

class HvSpectrum;

// One table of floats at equal steps from its minimum to its maximum wavelength, owned and
// copied with the object: an illuminant, a colour-matching function, a daylight component.
class SpectralDistribution {
public:
    // An empty table, step 0.
    SpectralDistribution();
    SpectralDistribution(uint16_t minimum, uint16_t maximum, uint16_t step, std::vector<float> values);
    explicit SpectralDistribution(const CieTables::Table& table);

    uint16_t GetStep() const { return step; }
    uint16_t GetMaximum() const { return maximum; }
    uint16_t GetMinimum() const { return minimum; }
    std::span<const float> GetValues() const { return values; }

    // The table of an illumination: A to D50, the fluorescent ones, the daylight components.
    // The others fail with ExceptionCalculationProblem "Unsupported Illumination type", and so
    // does an F value outside 1 to 12.
    static SpectralDistribution GetIlluminantDistribution(const IlluminationTYPE& illumination);
    // Axis 0, 1, 2: x-bar, y-bar, z-bar of an observer; another observer fails with
    // ExceptionCalculationProblem "Unsupported Observer type".
    static SpectralDistribution GetObserverDistribution(Observer observer, uint16_t axis);
    // CIE daylight of a colour temperature in kelvin, 100 at 560 nm; a temperature that isn't
    // positive fails as an unsupported illumination.
    static SpectralDistribution GetDaylightDistribution(int16_t temperature);
    // The values of a spectrum on the grid its conditions name.
    static SpectralDistribution FromSpectrum(const HvSpectrum& spectrum);

    // The table at 1 nm from first to last, which must lie on its grid: interpolated by Lagrange
    // polynomials of its own step, with its first value repeated before its start and its last
    // value after its end. A 1 nm table passes through unchanged.
    SpectralDistribution InterpolatedTo1nm(uint16_t first, uint16_t last) const;

    // The value at a wavelength of the grid, 0 beyond the ends of the table.
    float ValueAt(uint16_t wavelength) const;

private:
    std::vector<float> ExtendedOnOwnGrid(uint16_t first, uint16_t last) const;

    uint16_t step;
    uint16_t maximum;
    uint16_t minimum;
    std::vector<float> values;
};

}
