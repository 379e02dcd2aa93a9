#pragma once

#include <cstdint>

#include "utilities/Vector.h"

namespace Diagnostics {
class String;
}

namespace DeviceDriver {

// A measured series: one row of floats a measurement, taken at one gain and one integration
// time. The rows are reached through the current row; arithmetic with another series is
// refused when the two were not taken alike.
class BasicData {
public:
    BasicData();
    BasicData(const BasicData& other) = default;
    BasicData& operator=(const BasicData& other) = default;
    virtual ~BasicData();

    void SetIntegrationTime(float seconds) { integrationTime = seconds; }
    float IntegrationTime() const { return integrationTime; }
    void SetGain(uint32_t value) { gain = value; }
    uint32_t Gain() const { return gain; }

    unsigned long RowCount() const { return rows.Size(); }
    uint32_t CurrentRow() const { return currentRow; }

    // At least one row, and the current row lies among them.
    bool IsValid() const;

    // Keeps the first rows, adds empty ones, and goes back to the first row.
    void Resize(unsigned long count);
    void FirstRow() { currentRow = 0; }
    // Stays on the last row, so that a single row serves any number of measurements.
    void NextRow();

    void Store(const Utilities::Vector<float>& row);
    const Utilities::Vector<float>& Load() const;

    // Element by element on the current rows of both, in double precision.
    void Subtract(const BasicData& other);
    void Multiply(const BasicData& other);
    void Divide(const BasicData& other);

    virtual Diagnostics::String GetValueString() const;

protected:
    Utilities::Vector<Utilities::Vector<float>>& Rows() { return rows; }
    const Utilities::Vector<Utilities::Vector<float>>& Rows() const { return rows; }

private:
    struct OperationTexts;

    void CheckFit(const BasicData& other, const OperationTexts& texts) const;

    Utilities::Vector<Utilities::Vector<float>> rows;
    float integrationTime;
    uint32_t gain;
    uint32_t currentRow;
};

}
