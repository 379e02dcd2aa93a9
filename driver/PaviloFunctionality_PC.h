#pragma once

#include <cstdint>

#include "driver/PaviloFunctionalityByte.h"
#include "driver/PaviloUSBDevice.h"
#include "driver/ScanFifo.h"
#include "utilities/SmartPointer.h"

namespace DeviceDriver {

// The command set over the USB transport: request codes, payload layouts and bulk phases. One
// request block and one payload buffer serve every command, so two commands may not interleave;
// the payload is zeroed once, and bytes that a command doesn't set keep what the last one left.
class PaviloFunctionality_PC : public PaviloFunctionalityByte {
public:
    static constexpr std::uint32_t RequestSize = 10;
    static constexpr std::uint32_t PayloadSize = 8;

    PaviloFunctionality_PC();
    ~PaviloFunctionality_PC() override;

    void MeasureRequest(std::uint8_t* buffer, std::uint32_t size, std::uint32_t timeoutSeconds) override;
    void SetMeasureParameters(const std::uint8_t* integration, const std::uint8_t* lamp, const std::uint8_t* count,
        std::uint8_t flags) override;
    void GetMeasureParameters(
        std::uint8_t* integration, std::uint8_t* lamp, std::uint8_t* count, std::uint8_t& flags) override;
    void WriteEEPROM(const std::uint8_t* address, const std::uint8_t* size, const std::uint8_t* source,
        std::uint32_t count) override;
    void ReadEEPROM(
        const std::uint8_t* address, const std::uint8_t* size, std::uint8_t* target, std::uint32_t count) override;
    void WriteCPLD(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c) override;
    void ReadCPLD(std::uint8_t* word) override;
    void GetMISC(std::uint8_t& byte6, std::uint8_t* word0, std::uint8_t& byte7, std::uint8_t* word1,
        std::uint8_t* word2) override;
    void Reset(const std::uint8_t* code) override;
    std::uint8_t GetDeviceState(std::uint16_t stateId) override;
    void StartScan(std::uint32_t packetSize, std::uint32_t timeoutSeconds) override;
    void GetScanData(std::uint8_t* target, std::uint32_t& size) override;
    bool OpenDevice(const Utilities::String& address) override;
    bool CloseDevice() override;
    void NotifyObservers(long event) override;
    bool IsDeviceOpen() override;
    Utilities::Mutex GetDeviceMutex() override;

    Utilities::String GetValueString() const;

private:
    enum Direction : std::uint8_t { HostToInstrument = 0, InstrumentToHost = 1 };

    // Fills in the request for the first `length` bytes of the payload buffer.
    void Prepare(std::uint8_t code, Direction direction, std::uint32_t length);
    // Sends the request with the first `length` bytes of the payload buffer.
    void Command(std::uint8_t code, Direction direction, std::uint32_t length);
    void ReadEEPROMBytes(
        const std::uint8_t* address, const std::uint8_t* size, std::uint8_t* target, std::uint32_t count);
    void WriteEEPROMBytes(
        const std::uint8_t* address, const std::uint8_t* size, const std::uint8_t* source, std::uint32_t count);
    std::uint8_t DeviceState(std::uint16_t stateId);
    static Utilities::String ResolveAddress(const Utilities::String& address);

    std::uint8_t request[RequestSize];
    std::uint8_t payload[PayloadSize];
    std::uint32_t payloadLength;
    Utilities::SmartPointer<PaviloUSBDevice> device;
    ScanFifo fifo;
};

}
