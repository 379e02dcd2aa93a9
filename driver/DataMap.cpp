#include "driver/DataMap.h"

namespace DeviceDriver {

Utilities::String DataMap::KeyOf(uint16_t id)
{
    return Utilities::String(static_cast<unsigned short>(id));
}

DataMember& DataMap::Item(uint16_t id)
{
    return (*this)[KeyOf(id)];
}

DataMember* DataMap::FindItem(uint16_t id)
{
    Utilities::MapIterator<Utilities::String, DataMember> entry = Find(KeyOf(id));
    return entry.IsValid() ? &entry.Value() : nullptr;
}

const DataMember* DataMap::FindItem(uint16_t id) const
{
    Utilities::MapIterator<Utilities::String, const DataMember> entry = Find(KeyOf(id));
    return entry.IsValid() ? &entry.Value() : nullptr;
}

const DataMember& DataMap::ExistingItem(uint16_t id) const
{
    const Utilities::Map<Utilities::String, DataMember>& items = *this;
    return items[KeyOf(id)];
}

}
