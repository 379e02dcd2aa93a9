#include "driver/DarkData.h"

namespace DeviceDriver {

namespace {

// Seconds. Only integration times beyond this get the wider limit, so in practice none does.
constexpr float longIntegrationTime = 1000.0f;

}

DarkData::DarkData() : darkLevel(unknownLevel) { }

DarkData::DarkData(const BasicData& data) : BasicData(data), darkLevel(unknownLevel) { }

DarkData& DarkData::operator=(const BasicData& data)
{
    BasicData::operator=(data);
    darkLevel = unknownLevel;
    return *this;
}

DarkData::~DarkData() = default;

bool DarkData::IsValid(uint32_t limit) const
{
    int64_t allowed = limit;
    if (IntegrationTime() > longIntegrationTime) {
        allowed *= 3;
    }
    if (Gain() == 0) {
        allowed *= 10;
    }
    return IsValid() && darkLevel < allowed;
}

}
