#pragma once

#include <cstdint>

#include "driver/LowLevelDriver.h"
#include "driver/MeasurementHandle.h"

namespace DeviceDriver {

// The instrument's records themselves: the conditions, the calibration data and the log data
// read and written by id, and the files of the EEPROM. It measures nothing.
class ServiceHandle : public MeasurementHandle {
public:
    ServiceHandle();
    ~ServiceHandle() override;

    bool Measure(const Utilities::String& type) override;
    bool Calibrate() override;
    // Fills each marked item of map from the first of conditions, calibration and log data that
    // holds it with the same type.
    bool GetConditions(ConfigurationData& map, bool read) override;
    // Copies each marked item of map into the records that hold it; write sends all three.
    bool SetConditions(ConfigurationData& map, bool write) override;
    bool Open() override;
    bool Close() override;
    Utilities::String GetMode() override;
    virtual bool ReadFile(uint16_t id, LowLevelDriver::Bytes& bytes);
    virtual bool WriteFile(uint16_t id, const LowLevelDriver::Bytes& bytes);

private:
    void LoadRecords();
    void FillFromRecords(ConfigurationData& map);
    void CopyIntoRecords(const ConfigurationData& map);
    ConfigurationData* SourceOf(uint16_t id, int32_t type);

    Utilities::SmartPointer<ConfigurationData> calibrationData;
    Utilities::SmartPointer<ConfigurationData> logData;
};

}
