#include "manager/pavilo/InstrumentInfo_V1_Impl.h"

#include "driver/StateIds.h"
#include "manager/pavilo/HandleLockGuard.h"

namespace HviManager::PaviloDriver {

using DeviceDriver::StateIds;
using Utilities::SmartPointer;
using Utilities::String;

namespace {

struct StateKey {
    const char* key;
    uint16_t id;
};

constexpr StateKey stateKeys[] = {
    {"LastCalibrationTime", StateIds::secondsSinceCalibration},
    {"LastCalibrationCounter", StateIds::measurementsSinceCalibration},
    {"PhysicalFilter", StateIds::filter},
    {"SerialNumber", StateIds::serialNumber},
};

}

InstrumentInfo_V1_Impl::InstrumentInfo_V1_Impl(const SmartPointer<DeviceDriver::RemissionHandle>& handle)
    : handle(handle)
{
}

String InstrumentInfo_V1_Impl::GetInformation(const String& key)
{
    if (key == String("Connection")) {
        return ConnectionText();
    }
    for (const StateKey& state : stateKeys) {
        if (key == String(state.key)) {
            return StateValueText(state.id);
        }
    }
    return String();
}

String InstrumentInfo_V1_Impl::ConnectionText()
{
    long value = 0;
    if (!ReadStateLocked(StateIds::connected, value)) {
        return String("Failed");
    }
    return String(value != 0 ? "Connected" : "Not connected");
}

String InstrumentInfo_V1_Impl::StateValueText(uint16_t id)
{
    long value = 0;
    if (!ReadStateLocked(id, value)) {
        return String("Failed");
    }
    // The instrument's values are unsigned 32-bit numbers.
    return String(static_cast<unsigned long>(static_cast<uint32_t>(value)));
}

bool InstrumentInfo_V1_Impl::ReadStateLocked(uint16_t id, long& value)
{
    HandleLockGuard lock(*handle);
    if (!lock.Acquire()) {
        return false;
    }
    handle->GetState(id, value);
    return true;
}

}
