#pragma once

#include <cstdint>

#include "driver/ConfigurationData.h"
#include "driver/LowLevelDriver.h"
#include "driver/PaviloEEPROM.h"
#include "driver/PaviloFunctionality.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"
#include "utilities/Vector.h"

namespace Utilities {
class Exception;
}

namespace DeviceDriver {

// The instrument's one low-level driver: turns measure conditions into commands and the bytes
// that come back into sensor data. Each family of operations gives a communication failure its
// own text and, where it can help, resets the instrument with the family's code. One object per
// connection, shared by the handles of that connection; the last to detach closes it, and
// closing writes the log data, main copy and then mirror.
class PaviloLowLevelDriver : public LowLevelDriver {
public:
    static constexpr float SecondsPerTick = 6.8e-5f;
    static constexpr std::uint32_t TicksPerLampTick = 130;
    static constexpr std::uint32_t MaximumCount = 256;
    static constexpr std::uint32_t WireCountLimit = 65535;
    static constexpr std::uint32_t BlockSize = 256;
    static constexpr std::uint32_t PixelCount = 128;
    // The most readings a packet of a strip may hold: ten packets of readings of 256 bytes make
    // one transfer of at most 65535 bytes.
    static constexpr std::uint32_t LargestScanCount = 25;

    PaviloLowLevelDriver();
    ~PaviloLowLevelDriver() override;

    Utilities::String name() const override;
    void ReadCalibrationData(ConfigurationData& calibration) override;
    void WriteCalibrationData(ConfigurationData& calibration, bool unlock) override;
    void GetConditions(ConfigurationData& conditions) override;
    void SetConditions(ConfigurationData& conditions) override;
    bool GetLogData(ConfigurationData& log) override;
    bool SetLogData(const ConfigurationData& log) override;
    Utilities::SmartPointer<Bytes> ReadFile(std::uint16_t id) override;
    void WriteFile() override;
    void MeasureScan(SensorDataFifo& fifo, ConfigurationData& conditions) override;
    void Measure(SensorData& sensor, ConfigurationData& conditions) override;
    long GetState(std::uint16_t id) override;
    void SetState(std::uint16_t id, long value) override;
    bool Attach(const Utilities::String& connection, Utilities::Observer<long>* observer) override;
    bool Detach(Utilities::Observer<long>* observer) override;
    bool IsOpen() override;
    Utilities::Mutex GetDeviceMutex() override;

    virtual bool Open(const Utilities::String& connection);
    virtual bool Close();

    // Pixels 0 to 126 of one block, a word above the wrap threshold taken as negative;
    // position 127 repeats position 126.
    static Utilities::Vector<long> PixelsOf(const std::uint8_t* block, std::uint32_t wrapThreshold);

private:
    struct Request;

    void CheckPower();
    void ReadMISC(ConfigurationData& conditions);
    void ReadMeasureParameters(ConfigurationData& conditions);
    void WriteMeasureParameters(ConfigurationData& conditions);
    // The count on the wire: item 2010, or the replacement count when the flag asks for it.
    static std::uint32_t WireCount(const ConfigurationData& conditions);
    void WriteStoredItem(const ConfigurationData& conditions, std::uint16_t id);
    // The program that the number names in the CpldProgramRegistry, step by step.
    void RunCpldProgram(std::uint32_t number);
    void HandleGet(ConfigurationData& conditions, std::uint16_t id);
    void HandleSet(ConfigurationData& conditions, std::uint16_t id);
    void RequestMeasurement(std::uint8_t* buffer, std::uint32_t size, std::uint32_t wait);
    // One more in the log's counter.
    void CountInLog(std::uint16_t counter);
    // A measurement or a scan with the lamp on: counted, and its lamp time summed.
    void BookLampUse(std::uint16_t counter, float integrationTime, double lampSeconds);
    // The packets of a started scan into the FIFO, a row for each block; gives their number.
    std::uint32_t DrainScan(SensorDataFifo& fifo, const Request& request);
    void WriteLog();
    void ResetIgnoringFailure(std::uint16_t code);
    [[noreturn]] void RaiseAfterReset(std::uint16_t code, const char* prefix, const Utilities::Exception& failure);

    std::uint32_t filterState;
    Utilities::SmartPointer<ConfigurationData> logData;
    PaviloFunctionality functionality;
    Utilities::SmartPointer<PaviloEEPROM> eeprom;
};

}
