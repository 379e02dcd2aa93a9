#include "manager/pavilo/InstrumentInfo_V1_Impl.h"

#include "manager/pavilo/HandleLockGuard.h"

namespace HviManager::PaviloDriver {

using Utilities::SmartPointer;
using Utilities::String;

namespace {

constexpr uint16_t connectionState = 30002;

struct StateKey {
    const char* key;
    uint16_t id;
};

constexpr StateKey stateKeys[] = {
    {"LastCalibrationTime", 30003},
    {"LastCalibrationCounter", 30004},
    {"PhysicalFilter", 30005},
    {"SerialNumber", 30006},
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
    if (!ReadStateLocked(connectionState, value)) {
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
