#pragma once

#include <cstdint>

#include "driver/BasicData.h"

namespace DeviceDriver {

// A dark measurement and its level, the mean of its raw pixels. A dark of unknown level
// counts as too bright.
class DarkData : public BasicData {
public:
    static constexpr int32_t unknownLevel = 100000;

    DarkData();
    explicit DarkData(const BasicData& data);
    DarkData(const DarkData& other) = default;
    DarkData& operator=(const DarkData& other) = default;
    // The level of what is assigned is not known.
    DarkData& operator=(const BasicData& data);
    ~DarkData() override;

    void SetDarkLevel(int32_t value) { darkLevel = value; }
    int32_t DarkLevel() const { return darkLevel; }

    // The limit of the dark level at gain 1 and short integration times; gain 0 and very long
    // integration times allow more.
    bool IsValid(uint32_t limit) const;
    using BasicData::IsValid;

private:
    int32_t darkLevel;
};

}
