#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvMeasureConditions.h"
#include "diagnostics/String.h"
#include "utilities/Vector.h"

namespace CMetry {

// One measured or computed spectrum: 36 values from 380 nm to 730 nm in steps of 10 nm, whether
// it holds a usable measurement, and the conditions it was taken under. Reflectance is held as
// factors, 1.0 the perfect diffuser; illumination "Emission" marks radiance values.
class HvSpectrum {
public:
    static constexpr uint16_t numberOfValues = HvMeasureConditions::numberOfDataPoints;

    // Every constructor but the copy sets the spectrum valid.
    HvSpectrum();
    // Reads indices 0 to 35; a shorter Vector fails with ExceptionOutOfBound.
    explicit HvSpectrum(const Utilities::Vector<float>& values);
    HvSpectrum(const Utilities::Vector<float>& values, const HvMeasureConditions& conditions);
    // values points at 36 floats.
    explicit HvSpectrum(const float* values);
    HvSpectrum(const float* values, const HvMeasureConditions& conditions);
    HvSpectrum(const HvSpectrum& other);
    HvSpectrum& operator=(const HvSpectrum& other);
    ~HvSpectrum();

    // Unchecked: the index 0 to 35 is the caller's duty.
    float& operator[](uint16_t index) { return values[index]; }
    const float& operator[](uint16_t index) const { return values[index]; }
    const float* GetValues() const { return values.data(); }
    uint16_t GetNumberOfValues() const { return numberOfValues; }
    Utilities::Vector<float> ToVector() const;

    bool IsValid() const { return valid; }
    void SetValid(bool value) { valid = value; }

    HvMeasureConditions GetConditions() const { return conditions; }
    const HvMeasureConditions& Conditions() const { return conditions; }
    HvMeasureConditions& Conditions() { return conditions; }
    void SetConditions(const HvMeasureConditions& value) { conditions = value; }

    // True when some value is above 0.
    bool HasSignal() const;
    // The wavelength of a data point in nm; 0 for an index beyond the last point.
    uint16_t GetWavelength(uint16_t index) const;
    // The data point at or below a wavelength; 0 for a wavelength outside the grid.
    uint16_t GetIndex(uint16_t wavelength) const;

    // Values compared exactly, valid flags and conditions equal.
    bool operator==(const HvSpectrum& other) const;
    bool operator!=(const HvSpectrum& other) const { return !(*this == other); }

    Diagnostics::String GetValueString() const;

private:
    void CopyFrom(const Utilities::Vector<float>& source);

    std::array<float, numberOfValues> values;
    bool valid;
    HvMeasureConditions conditions;
};

}
