#include "manager/pavilo/PhysicalConditionItems.h"

namespace HviManager::PaviloDriver {

void PhysicalConditionItems::SetMarkedU32(DeviceDriver::ConfigurationData& items, uint16_t id, uint32_t value)
{
    items.SetU32(id, value);
    items.Mark(id, true);
}

void PhysicalConditionItems::SetMarkedFloat(DeviceDriver::ConfigurationData& items, uint16_t id, float value)
{
    items.SetFloat(id, value);
    items.Mark(id, true);
}

}
