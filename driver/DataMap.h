#pragma once

#include <cstdint>

#include "driver/DataMember.h"
#include "utilities/Map.h"
#include "utilities/String.h"

namespace DeviceDriver {

// The items of a ConfigurationData, keyed by their id in decimal.
class DataMap : public Utilities::Map<Utilities::String, DataMember> {
public:
    static Utilities::String KeyOf(uint16_t id);

    // The item of the id; a new one, marked and of no type, when it is not there yet.
    DataMember& Item(uint16_t id);

    // Null when the id has no item.
    DataMember* FindItem(uint16_t id);
    const DataMember* FindItem(uint16_t id) const;

    // Raises the Map's own failure for an id that has no item.
    const DataMember& ExistingItem(uint16_t id) const;
};

}
