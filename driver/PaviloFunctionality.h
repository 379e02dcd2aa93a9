#pragma once

#include <cstdint>
#include <memory>

#include "driver/PaviloFunctionalityByte.h"
#include "utilities/Mutex.h"
#include "utilities/Observee.h"
#include "utilities/SmartPointer.h"
#include "utilities/String.h"

namespace DeviceDriver {

// The command set in host numbers: converts to and from the instrument's big-endian bytes, and
// keeps an image of the whole EEPROM, read in one transfer at first need, so that every later
// read is a copy. Writes go to the instrument first, then to the image.
class PaviloFunctionality {
public:
    static constexpr std::uint16_t ImageSize = 8192;

    // Uses the command set that the NamingService gives for "PaviloFunctionality".
    PaviloFunctionality();
    virtual ~PaviloFunctionality();
    PaviloFunctionality(const PaviloFunctionality&) = delete;
    PaviloFunctionality& operator=(const PaviloFunctionality&) = delete;

    virtual std::uint8_t GetDeviceState(std::uint16_t stateId);
    virtual void StartScan(std::uint32_t packetSize, std::uint32_t timeoutSeconds);

    void MeasureRequest(std::uint8_t* buffer, std::uint32_t size, std::uint32_t timeoutSeconds);
    void SetMeasureParameters(std::uint16_t integration, std::uint16_t lamp, std::uint16_t count, std::uint8_t flags);
    void GetMeasureParameters(
        std::uint16_t& integration, std::uint16_t& lamp, std::uint16_t& count, std::uint8_t& flags);
    void WriteEEPROM(std::uint32_t address, std::uint16_t size, const std::uint8_t* source, std::uint32_t count);
    void ReadEEPROM(std::uint32_t address, std::uint16_t size, std::uint8_t* target, std::uint32_t count);
    void WriteCPLD(std::uint16_t a, std::uint16_t b, std::uint16_t c);
    void ReadCPLD(std::uint16_t& word);
    void GetMISC(
        std::uint8_t& byte6, std::uint16_t& word0, std::uint8_t& byte7, std::uint16_t& word1, std::uint16_t& word2);
    void Reset(std::uint16_t code);
    void GetScanData(std::uint8_t* target, std::uint32_t& size);
    bool IsDeviceOpen();
    Utilities::Mutex GetDeviceMutex();
    // Both drop the image, so that a change made by another process is seen.
    bool OpenDevice(const Utilities::String& address);
    bool CloseDevice();

    void SetOwner(Utilities::Observee<long>* owner);
    void ClearOwner();

    static void ToBytes(std::uint16_t value, std::uint8_t* bytes);
    static void ToBytes(std::uint32_t value, std::uint8_t* bytes);
    static void ToBytes(float value, std::uint8_t* bytes);
    static std::uint16_t U16FromBytes(const std::uint8_t* bytes);
    static std::uint32_t U32FromBytes(const std::uint8_t* bytes);
    static float FloatFromBytes(const std::uint8_t* bytes);

private:
    void LoadImage();
    // Raises ExceptionPaviloCommunication for a range that leaves the EEPROM.
    static void CheckRange(const char* operation, std::uint32_t address, std::uint32_t count);

    std::unique_ptr<std::uint8_t[]> image;
    const std::uint16_t imageSize;
    Utilities::SmartPointer<PaviloFunctionalityByte> functionality;
};

}
