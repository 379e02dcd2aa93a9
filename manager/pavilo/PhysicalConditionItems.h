#pragma once

#include <cstdint>

#include "driver/ConditionItems.h"
#include "driver/ConfigurationData.h"

namespace HviManager::PaviloDriver {

// The items of the "PhysicalConditions" that the measuring interfaces set before a measurement.
// A set item is marked, so that it goes to the instrument with the handle's next measurement.
class PhysicalConditionItems : public DeviceDriver::ConditionItems {
public:
    static void SetMarkedU32(DeviceDriver::ConfigurationData& items, uint16_t id, uint32_t value);
    static void SetMarkedFloat(DeviceDriver::ConfigurationData& items, uint16_t id, float value);
    // What every reflectance measurement sets: the lamp on for its warm-up and off after, the
    // gain 1, and the readings per position, taken from the replacement item if asked.
    static void SetReflectanceItems(
        DeviceDriver::ConfigurationData& items, uint32_t readings, bool readingsFromReplacement, bool adaptTime);
};

}
