#pragma once

#include "driver/BasicData.h"

namespace DeviceDriver {

// The spectrum of a sample, one row a measurement, one element a wavelength.
class SpectrumData : public BasicData {
public:
    SpectrumData() = default;
    explicit SpectrumData(const BasicData& data);
    SpectrumData(const SpectrumData& other) = default;
    SpectrumData& operator=(const SpectrumData& other) = default;
    SpectrumData& operator=(const BasicData& data);
    ~SpectrumData() override;
};

}
