#pragma once

#include <cstdint>

#include "driver/ConfigurationData.h"

namespace HviManager::PaviloDriver {

// The items of the "PhysicalConditions" that the measuring interfaces set before a measurement.
// A set item is marked, so that it goes to the instrument with the handle's next measurement.
class PhysicalConditionItems {
public:
    static constexpr uint16_t lampOffDuringMeasurement = 2000;
    static constexpr uint16_t lampTime = 2001;
    static constexpr uint16_t gain = 2002;
    static constexpr uint16_t lampOnAfterMeasurement = 2003;
    static constexpr uint16_t countFromReplacementItem = 2008;
    static constexpr uint16_t integrationTime = 2009;
    static constexpr uint16_t count = 2010;
    static constexpr uint16_t adaptIntegrationTime = 2011;

    static void SetMarkedU32(DeviceDriver::ConfigurationData& items, uint16_t id, uint32_t value);
    static void SetMarkedFloat(DeviceDriver::ConfigurationData& items, uint16_t id, float value);
};

}
