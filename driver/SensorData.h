#pragma once

#include <cstdint>

#include "driver/BasicData.h"
#include "utilities/Vector.h"

namespace DeviceDriver {

// What the sensor gave: raw rows of signed pixel counts, one row a measurement, beside the
// series of floats that the calculation makes of them. Pixel 0 is masked and counts only
// where said.
class SensorData : public BasicData {
public:
    SensorData();
    SensorData(const SensorData& other) = default;
    SensorData& operator=(const SensorData& other) = default;
    ~SensorData() override;

    void SetRaw(const Utilities::Vector<Utilities::Vector<long>>& rows);
    const Utilities::Vector<Utilities::Vector<long>>& Raw() const;
    bool HasRaw() const { return raw.Size() > 0; }

    // The raw rows shrink to one that holds the mean of each pixel, cut off toward zero.
    void Mean();

    // One row of the series for each raw row: the polynomial c[0] + c[1] x + ... at each raw
    // value. A single coefficient passes the raw values unchanged. Back on the first row.
    void Linearize(const Utilities::Vector<float>& polynomial);

    // Folds each row of pixels into outputs: output k sums count[k] pixels from first[k] on,
    // each with the next coefficient, the coefficients read on across the outputs. The current
    // row stays where it is.
    void MatrixMultiply(const Utilities::Vector<long>& first, const Utilities::Vector<long>& count,
        const Utilities::Vector<float>& coefficients);

    // Over the live pixels, 1 to the last, of all raw rows; 0 without raw rows.
    long MaxRaw() const;
    long MeanRaw() const;

    // More than count raw values, pixel 0 included, above limit.
    bool IsSaturated(long limit, uint16_t count) const;

private:
    static Utilities::Vector<float> Linearized(
        const Utilities::Vector<long>& pixels, const Utilities::Vector<float>& polynomial);
    static Utilities::Vector<float> Folded(const Utilities::Vector<float>& pixels, const Utilities::Vector<long>& first,
        const Utilities::Vector<long>& count, const Utilities::Vector<float>& coefficients);

    Utilities::Vector<Utilities::Vector<long>> raw;
};

}
