#pragma once

#include "driver/BasicData.h"

namespace DeviceDriver {

// The transmission reference by which a sample is divided.
class ReferenceData : public BasicData {
public:
    ReferenceData() = default;
    explicit ReferenceData(const BasicData& data);
    ReferenceData(const ReferenceData& other) = default;
    ReferenceData& operator=(const ReferenceData& other) = default;
    ReferenceData& operator=(const BasicData& data);
    ~ReferenceData() override;
};

}
