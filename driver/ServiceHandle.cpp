#include "driver/ServiceHandle.h"

#include "driver/DataMember.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

namespace {

bool IsKnownType(int32_t type)
{
    return type >= DataMember::typeU32 && type <= DataMember::typeFloatVector;
}

bool IsIntegerType(int32_t type)
{
    return type == DataMember::typeU32 || type == DataMember::typeU32Vector;
}

void CopyValue(const DataMember& from, DataMember& to)
{
    if (IsIntegerType(from.Type())) {
        to.StoreIntegers(from.Integers(), from.Type());
    } else {
        to.StoreFloats(from.Floats(), from.Type());
    }
}

Utilities::String ItemText(uint16_t id, const char* ending)
{
    return Utilities::String("Requested item with ID ") + Utilities::String(static_cast<long>(id)) + ending;
}

}

ServiceHandle::ServiceHandle() = default;

ServiceHandle::~ServiceHandle() = default;

bool ServiceHandle::Measure(const Utilities::String&)
{
    SetLastError("Not supported!");
    return false;
}

bool ServiceHandle::Calibrate()
{
    SetLastError("Not supported!");
    return false;
}

bool ServiceHandle::GetConditions(ConfigurationData& map, bool read)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        if (read) {
            HoldingDevice([this] { LoadRecords(); });
        }
        FillFromRecords(map);
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
    SetLastError(noError);
    return true;
}

bool ServiceHandle::SetConditions(ConfigurationData& map, bool write)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        CopyIntoRecords(map);
        if (write) {
            HoldingDevice([this] {
                driver->SetConditions(conditions);
                driver->WriteCalibrationData(*calibrationData, false);
                driver->SetLogData(*logData);
            });
        }
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
    SetLastError(noError);
    return true;
}

bool ServiceHandle::Open()
{
    if (!MeasurementHandle::Open()) {
        return false;
    }
    try {
        HoldingDevice([this] { LoadRecords(); });
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
    return true;
}

bool ServiceHandle::Close()
{
    calibrationData = Utilities::SmartPointer<ConfigurationData>();
    logData = Utilities::SmartPointer<ConfigurationData>();
    return MeasurementHandle::Close();
}

Utilities::String ServiceHandle::GetMode()
{
    return "Service";
}

bool ServiceHandle::ReadFile(uint16_t id, LowLevelDriver::Bytes& bytes)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        HoldingDevice([this, id, &bytes] { bytes = *driver->ReadFile(id); });
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
    SetLastError(noError);
    return true;
}

bool ServiceHandle::WriteFile(uint16_t, const LowLevelDriver::Bytes&)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        HoldingDevice([this] { driver->WriteFile(); });
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
    SetLastError(noError);
    return true;
}

void ServiceHandle::LoadRecords()
{
    Utilities::SmartPointer<ConfigurationData> calibration(new ConfigurationData("CalibrationData"));
    Utilities::SmartPointer<ConfigurationData> log(new ConfigurationData("LogData"));
    conditions.MarkAll(true);
    driver->GetConditions(conditions);
    driver->ReadCalibrationData(*calibration);
    driver->GetLogData(*log);
    calibrationData = calibration;
    logData = log;
}

void ServiceHandle::FillFromRecords(ConfigurationData& map)
{
    const Utilities::Vector<uint16_t> ids = map.MarkedIds();
    for (unsigned long index = 0; index < ids.Size(); ++index) {
        const uint16_t id = ids[index];
        DataMember& item = *map.FindItem(id);
        if (!IsKnownType(item.Type())) {
            Raise(ItemText(id, " not found"));
        }
        const ConfigurationData* source = SourceOf(id, item.Type());
        if (source == nullptr) {
            Raise("Data not found");
        }
        CopyValue(*source->FindItem(id), item);
    }
}

void ServiceHandle::CopyIntoRecords(const ConfigurationData& map)
{
    const Utilities::Vector<uint16_t> ids = map.MarkedIds();
    for (unsigned long index = 0; index < ids.Size(); ++index) {
        const uint16_t id = ids[index];
        const DataMember& item = *map.FindItem(id);
        ConfigurationData* target = SourceOf(id, item.Type());
        if (target == nullptr) {
            Raise(ItemText(id, " invalid"));
        }
        DataMember& stored = *target->FindItem(id);
        CopyValue(item, stored);
        stored.Mark(true);
    }
}

// A record that doesn't hold the id is passed over, so that an id of the log is found although
// the conditions lack it.
ConfigurationData* ServiceHandle::SourceOf(uint16_t id, int32_t type)
{
    ConfigurationData* const calibration = calibrationData.IsNull() ? nullptr : calibrationData.operator->();
    ConfigurationData* const log = logData.IsNull() ? nullptr : logData.operator->();
    for (ConfigurationData* source : {&conditions, calibration, log}) {
        const DataMember* item = source == nullptr ? nullptr : source->FindItem(id);
        if (item != nullptr && item->Type() == type) {
            return source;
        }
    }
    return nullptr;
}

}
