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

void PhysicalConditionItems::SetReflectanceItems(
    DeviceDriver::ConfigurationData& items, uint32_t readings, bool readingsFromReplacement, bool adaptTime)
{
    SetMarkedFloat(items, lampTime, 0.15028f);
    SetMarkedU32(items, count, readings);
    SetMarkedU32(items, lampOnAfterMeasurement, 0);
    SetMarkedU32(items, lampOffDuringMeasurement, 0);
    SetMarkedU32(items, gain, 1);
    SetMarkedU32(items, countFromReplacementItem, readingsFromReplacement ? 1 : 0);
    SetMarkedU32(items, adaptIntegrationTime, adaptTime ? 1 : 0);
}

}
