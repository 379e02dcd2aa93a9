#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvColorVector.h"
#include "cmetry/HvMeasureConditions.h"
#include "cmetry/HvSpectrum.h"

namespace CMetry {

// The radiance of a black body at a temperature in kelvin, on the grid of data points that the
// conditions name, and its tristimulus values. Built once for conditions, so that a search over
// many temperatures reads the grid and prepares the emission conditions only once.
class BlackBody {
public:
    explicit BlackBody(const HvMeasureConditions& conditions);

    // Unscaled radiances, typed "Emission"; at low temperatures the shortest wavelengths are 0.
    HvSpectrum GetSpectrum(float temperature) const;
    // X, Y, Z of the spectrum scaled to Y = 100, or as they come when Y can't be computed.
    HvColorVector GetXYZ(float temperature) const;

private:
    using Grid = std::array<double, HvSpectrum::numberOfValues>;

    void TakeGrid(const HvMeasureConditions& conditions);

    uint16_t count;
    // Per data point: the wavelength in metres and the first radiation constant over its fifth power.
    Grid wavelengths;
    Grid scales;
    HvMeasureConditions emissionConditions;
    HvMeasureConditions xyzConditions;
};

HvSpectrum GetBlackBodySpectrum(float temperature, const HvMeasureConditions& conditions);
HvColorVector GetBlackBodyXYZ(float temperature, const HvMeasureConditions& conditions);

}
