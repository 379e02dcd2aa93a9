#include "manager/pavilo/ReflectanceSetup.h"

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "manager/pavilo/PhysicalConditionItems.h"

namespace HviManager::PaviloDriver {

namespace {

using Items = PhysicalConditionItems;

constexpr uint16_t filterState = 30005;
constexpr long uvCutFilter = 2;

void SetItemsOf(ReflectanceSetup::Step step, DeviceDriver::ConfigurationData& items)
{
    const bool calibrating = step == ReflectanceSetup::Step::Calibrate;
    Items::SetMarkedFloat(items, Items::lampTime, 0.15028f);
    if (calibrating) {
        Items::SetMarkedFloat(items, Items::integrationTime, 0.0204f);
    }
    Items::SetMarkedU32(items, Items::count, 4);
    Items::SetMarkedU32(items, Items::lampOnAfterMeasurement, 0);
    Items::SetMarkedU32(items, Items::lampOffDuringMeasurement, 0);
    Items::SetMarkedU32(items, Items::gain, 1);
    Items::SetMarkedU32(items, Items::countFromReplacementItem, 0);
    Items::SetMarkedU32(items, Items::adaptIntegrationTime, calibrating ? 1 : 0);
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
    if (handle.GetState(filterState, filter) && filter == uvCutFilter) {
        conditions.SetCondition("Physical.Filter", "UVCut");
    }
}

}
