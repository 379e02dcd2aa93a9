#pragma once

#include "driver/BasicData.h"

namespace DeviceDriver {

// The white correction: for each wavelength the factor by which a sample is multiplied,
// one row for each measurement of a calibration.
class WhiteData : public BasicData {
public:
    WhiteData() = default;
    explicit WhiteData(const BasicData& data);
    WhiteData(const WhiteData& other) = default;
    WhiteData& operator=(const WhiteData& other) = default;
    WhiteData& operator=(const BasicData& data);
    ~WhiteData() override;
};

}
