#pragma once

#include <cstdint>
#include <vector>

#include "utilities/Component.h"
#include "utilities/Mutex.h"
#include "utilities/Observee.h"
#include "utilities/Observer.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace DeviceDriver {

class ConfigurationData;
class SensorData;
class SensorDataFifo;

// The instrument as the measurement handles see it: it measures, reads and writes calibration
// data, conditions and log data, and answers state questions. Events of the connection reach
// its observers: 0 for an interrupt, 1 for a lost connection.
class LowLevelDriver : public Utilities::Component, public Utilities::Observee<long> {
public:
    using Bytes = std::vector<std::uint8_t>;

    LowLevelDriver() = default;
    ~LowLevelDriver() override;

    virtual Utilities::String name() const = 0;
    virtual void ReadCalibrationData(ConfigurationData& calibration) = 0;
    virtual void WriteCalibrationData(ConfigurationData& calibration, bool unlock) = 0;
    virtual void GetConditions(ConfigurationData& conditions) = 0;
    virtual void SetConditions(ConfigurationData& conditions) = 0;
    virtual bool GetLogData(ConfigurationData& log) = 0;
    virtual bool SetLogData(const ConfigurationData& log) = 0;
    virtual Utilities::SmartPointer<Bytes> ReadFile(std::uint16_t id) = 0;
    virtual void WriteFile() = 0;
    virtual void MeasureScan(SensorDataFifo& fifo, ConfigurationData& conditions) = 0;
    virtual void Measure(SensorData& sensor, ConfigurationData& conditions) = 0;
    virtual long GetState(std::uint16_t id) = 0;
    virtual void SetState(std::uint16_t id, long value) = 0;
    virtual bool Attach(const Utilities::String& connection, Utilities::Observer<long>* observer) = 0;
    virtual bool Detach(Utilities::Observer<long>* observer) = 0;
    virtual bool IsOpen() = 0;
    // The lock that keeps each transfer with the instrument whole. A step of several transfers
    // holds it across them, so that it is taken once, not once per transfer.
    virtual Utilities::Mutex GetDeviceMutex() = 0;
};

}
