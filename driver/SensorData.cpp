#include "driver/SensorData.h"

#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::Vector;

namespace {

constexpr long maxRawStart = -100000;

}

SensorData::SensorData() : raw(0) { }

SensorData::~SensorData() = default;

void SensorData::SetRaw(const Vector<Vector<long>>& rows)
{
    raw = rows;
}

const Vector<Vector<long>>& SensorData::Raw() const
{
    if (!HasRaw()) {
        throw ExceptionOutOfBound("Unable to load raw data");
    }
    return raw;
}

void SensorData::Mean()
{
    if (!HasRaw()) {
        throw ExceptionOutOfBound("Invalid raw data for mean value");
    }
    const long rowCount = static_cast<long>(raw.Size());
    Vector<long> means(raw[0].Size());
    for (unsigned long pixel = 0; pixel < means.Size(); ++pixel) {
        long sum = 0;
        for (unsigned long row = 0; row < raw.Size(); ++row) {
            sum += raw[row][pixel];
        }
        means[pixel] = sum / rowCount;
    }
    Vector<Vector<long>> meanRow(1);
    meanRow[0] = means;
    raw = meanRow;
}

void SensorData::Linearize(const Vector<float>& polynomial)
{
    if (!HasRaw()) {
        throw ExceptionOutOfBound("Invalid raw data for linearization");
    }
    Resize(raw.Size());
    for (unsigned long row = 0; row < raw.Size(); ++row) {
        Rows()[row] = Linearized(raw[row], polynomial);
    }
}

// Horner's rule in double precision.
Vector<float> SensorData::Linearized(const Vector<long>& pixels, const Vector<float>& polynomial)
{
    const unsigned long degree = polynomial.Size();
    Vector<float> values(pixels.Size());
    for (unsigned long pixel = 0; pixel < pixels.Size(); ++pixel) {
        if (degree < 1) {
            throw ExceptionOutOfBound("Unable to linearize");
        }
        const double x = static_cast<double>(pixels[pixel]);
        double y = degree == 1 ? x : static_cast<double>(polynomial[degree - 1]);
        for (unsigned long i = degree - 1; i-- > 0;) {
            y = x * y + static_cast<double>(polynomial[i]);
        }
        values[pixel] = static_cast<float>(y);
    }
    return values;
}

void SensorData::MatrixMultiply(const Vector<long>& first, const Vector<long>& count, const Vector<float>& coefficients)
{
    if (first.Size() != count.Size()) {
        throw ExceptionOutOfBound("Different vector length in matrix multiplication");
    }
    if (!IsValid()) {
        throw ExceptionOutOfBound("Invalid raw data for matrix multiplication");
    }
    for (unsigned long row = 0; row < RowCount(); ++row) {
        Rows()[row] = Folded(Rows()[row], first, count, coefficients);
    }
}

Vector<float> SensorData::Folded(const Vector<float>& pixels, const Vector<long>& first, const Vector<long>& count,
    const Vector<float>& coefficients)
{
    Vector<float> outputs(first.Size());
    unsigned long next = 0;
    for (unsigned long output = 0; output < first.Size(); ++output) {
        double sum = 0.0;
        for (long j = 0; j < count[output]; ++j) {
            const unsigned long pixel = static_cast<unsigned long>(first[output] + j);
            sum += static_cast<double>(coefficients[next++]) * static_cast<double>(pixels[pixel]);
        }
        outputs[output] = static_cast<float>(sum);
    }
    return outputs;
}

long SensorData::MaxRaw() const
{
    if (!HasRaw()) {
        return 0;
    }
    long maximum = maxRawStart;
    for (unsigned long row = 0; row < raw.Size(); ++row) {
        for (unsigned long pixel = 1; pixel < raw[row].Size(); ++pixel) {
            if (raw[row][pixel] > maximum) {
                maximum = raw[row][pixel];
            }
        }
    }
    return maximum;
}

// Rounded half up, by adding 0.5 and cutting off. A row without live pixels has no mean: 0.
long SensorData::MeanRaw() const
{
    if (!HasRaw() || raw[0].Size() < 2) {
        return 0;
    }
    double sum = 0.0;
    for (unsigned long row = 0; row < raw.Size(); ++row) {
        for (unsigned long pixel = 1; pixel < raw[row].Size(); ++pixel) {
            sum += static_cast<double>(raw[row][pixel]);
        }
    }
    const double livePixels = static_cast<double>(raw[0].Size() - 1);
    return static_cast<long>(sum / static_cast<double>(raw.Size()) / livePixels + 0.5);
}

// Counted in 16 bits, as the answer always has been: on a very long series the count wraps.
bool SensorData::IsSaturated(long limit, uint16_t count) const
{
    uint16_t exceeding = 0;
    for (unsigned long row = 0; row < raw.Size(); ++row) {
        for (unsigned long pixel = 0; pixel < raw[row].Size(); ++pixel) {
            if (raw[row][pixel] > limit) {
                ++exceeding;
            }
        }
    }
    return exceeding > count;
}

}
