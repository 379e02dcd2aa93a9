#include "driver/BasicData.h"

#include "diagnostics/String.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

using Utilities::ExceptionOutOfBound;
using Utilities::Vector;

// The failure texts of one operation, in the order of its checks.
struct BasicData::OperationTexts {
    const char* differentSize;
    const char* differentGain;
    const char* differentIntegrationTime;
};

namespace {

constexpr double integrationTimeTolerance = 0.001;

}

BasicData::BasicData() : rows(0), integrationTime(0.0f), gain(0), currentRow(0) { }

BasicData::~BasicData() = default;

bool BasicData::IsValid() const
{
    return rows.Size() > 0 && currentRow < rows.Size();
}

void BasicData::Resize(unsigned long count)
{
    Vector<Vector<float>> resized(count);
    for (unsigned long i = 0; i < count; ++i) {
        resized[i] = i < rows.Size() ? rows[i] : Vector<float>(0);
    }
    rows = resized;
    currentRow = 0;
}

void BasicData::NextRow()
{
    if (currentRow + 1 < rows.Size()) {
        ++currentRow;
    }
}

void BasicData::Store(const Vector<float>& row)
{
    if (!IsValid()) {
        throw ExceptionOutOfBound("Unable to store data");
    }
    rows[currentRow] = row;
}

const Vector<float>& BasicData::Load() const
{
    if (!IsValid()) {
        throw ExceptionOutOfBound("Unable to load data");
    }
    return rows[currentRow];
}

void BasicData::CheckFit(const BasicData& other, const OperationTexts& texts) const
{
    if (rows[currentRow].Size() != other.rows[other.currentRow].Size()) {
        throw ExceptionOutOfBound(texts.differentSize);
    }
    if (gain != other.gain) {
        throw ExceptionOutOfBound(texts.differentGain);
    }
    const double time = integrationTime;
    const double otherTime = other.integrationTime;
    if (time < otherTime - integrationTimeTolerance || time > otherTime + integrationTimeTolerance) {
        throw ExceptionOutOfBound(texts.differentIntegrationTime);
    }
}

void BasicData::Subtract(const BasicData& other)
{
    static const OperationTexts texts{"Unable to subtract (different vector size)",
        "Unable to subtract (different gain)", "Unable to subtract (different integration time)"};
    CheckFit(other, texts);
    Vector<float>& row = rows[currentRow];
    const Vector<float>& subtrahend = other.rows[other.currentRow];
    for (unsigned long i = 0; i < row.Size(); ++i) {
        row[i] = static_cast<float>(static_cast<double>(row[i]) - static_cast<double>(subtrahend[i]));
    }
}

void BasicData::Multiply(const BasicData& other)
{
    static const OperationTexts texts{"Unable to multiply (different vector size)",
        "Unable to multiply (different gain)", "Unable to multiply (different integration time)"};
    CheckFit(other, texts);
    Vector<float>& row = rows[currentRow];
    const Vector<float>& factors = other.rows[other.currentRow];
    for (unsigned long i = 0; i < row.Size(); ++i) {
        row[i] = static_cast<float>(static_cast<double>(row[i]) * static_cast<double>(factors[i]));
    }
}

// Stops at the first zero of the divisor; what was divided before it stays divided.
void BasicData::Divide(const BasicData& other)
{
    static const OperationTexts texts{"Unable to divide (different vector size)", "Unable to divide (different gain)",
        "Unable to divide (different integration time)"};
    CheckFit(other, texts);
    Vector<float>& row = rows[currentRow];
    const Vector<float>& divisors = other.rows[other.currentRow];
    for (unsigned long i = 0; i < row.Size(); ++i) {
        if (divisors[i] == 0.0f) {
            throw ExceptionOutOfBound("Unable to divide (division by zero)");
        }
        row[i] = static_cast<float>(static_cast<double>(row[i]) / static_cast<double>(divisors[i]));
    }
}

Diagnostics::String BasicData::GetValueString() const
{
    Diagnostics::String value("rows: ");
    value += static_cast<long>(rows.Size());
    value += ", current row: ";
    value += static_cast<long>(currentRow);
    value += ", gain: ";
    value += static_cast<long>(gain);
    value += ", integration time: ";
    value += Diagnostics::String(integrationTime);
    return value;
}

}
