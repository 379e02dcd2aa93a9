#pragma once

#include <array>
#include <cstdint>

#include "cmetry/HvMeasureConditions.h"
#include "diagnostics/String.h"

namespace CMetry {

// One colour in one colour space: four channels, of which only "CMYK" uses the fourth, and the
// conditions, whose "ColorSpaceDescription.Type" names the space and whose
// "ColorSpaceDescription.AbsoluteOrDeltaVector" says whether the values are differences.
class HvColorVector {
public:
    static constexpr uint16_t numberOfChannels = 4;

    HvColorVector();
    // The fourth channel is 0.
    HvColorVector(float first, float second, float third, const HvMeasureConditions& conditions);
    HvColorVector(const HvColorVector& other);
    HvColorVector& operator=(const HvColorVector& other);
    ~HvColorVector();

    float& operator[](uint16_t index) { return values[index]; }
    const float& operator[](uint16_t index) const { return values[index]; }

    HvMeasureConditions& GetConditions() { return conditions; }
    const HvMeasureConditions& GetConditions() const { return conditions; }
    void SetConditions(const HvMeasureConditions& value) { conditions = value; }
    // The conditions, then the physical filter of filterSource in place of theirs.
    void SetConditions(const HvMeasureConditions& value, const HvMeasureConditions& filterSource);

    bool operator==(const HvColorVector& other) const;
    bool operator!=(const HvColorVector& other) const { return !(*this == other); }

    // Channel by channel over all four, in double precision, stored as float.
    void Subtract(const HvColorVector& other);
    void Multiply(const HvColorVector& other);
    // The Euclidean norm of all four channels.
    double GetLength() const;

    Diagnostics::String GetValueString() const;

protected:
    Diagnostics::String ValueString(const char* typeName) const;

private:
    std::array<float, numberOfChannels> values;
    HvMeasureConditions conditions;
};

}
