#include "manager/pavilo/ReflectanceSetup.h"

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "driver/StateIds.h"
#include "manager/pavilo/PhysicalConditionItems.h"

namespace HviManager::PaviloDriver {

namespace {

using Items = PhysicalConditionItems;

void SetItemsOf(ReflectanceSetup::Step step, DeviceDriver::ConfigurationData& items)
{
    const bool calibrating = step == ReflectanceSetup::Step::Calibrate;
    if (calibrating) {
        Items::SetMarkedFloat(items, Items::integrationTime, 0.0204f);
    }
    Items::SetReflectanceItems(items, 4, false, calibrating);
}

}

bool ReflectanceSetup::WriteItems(DeviceDriver::RemissionHandle& handle, Step step)
{
    DeviceDriver::ConfigurationData items("PhysicalConditions");
    if (!handle.GetConditions(items, false)) {
        return false;
    }
    SetItemsOf(step, items);
    return handle.SetConditions(items, false);
}

void ReflectanceSetup::ApplyFilterRule(DeviceDriver::RemissionHandle& handle, CMetry::HvMeasureConditions& conditions)
{
    long filter = 0;
    if (handle.GetState(DeviceDriver::StateIds::filter, filter) && filter == DeviceDriver::StateIds::filterUVCut) {
        conditions.SetCondition("Physical.Filter", "UVCut");
    }
}

}
