#pragma once

#include <atomic>
#include <cstdint>

#include "utilities/Component.h"
#include "utilities/Mutex.h"
#include "utilities/Observee.h"
#include "utilities/String.h"

namespace DeviceDriver {

// The instrument's command set as it stands on the wire: every value is a buffer of big-endian
// bytes. Found by name, so that another implementation can stand in for the USB one.
class PaviloFunctionalityByte : public Utilities::Component {
public:
    PaviloFunctionalityByte() = default;
    PaviloFunctionalityByte(const PaviloFunctionalityByte&) = delete;
    PaviloFunctionalityByte& operator=(const PaviloFunctionalityByte&) = delete;
    ~PaviloFunctionalityByte() override;

    virtual void MeasureRequest(std::uint8_t* buffer, std::uint32_t size, std::uint32_t timeoutSeconds) = 0;
    virtual void SetMeasureParameters(
        const std::uint8_t* integration, const std::uint8_t* lamp, const std::uint8_t* count, std::uint8_t flags) = 0;
    virtual void GetMeasureParameters(
        std::uint8_t* integration, std::uint8_t* lamp, std::uint8_t* count, std::uint8_t& flags) = 0;
    virtual void WriteEEPROM(
        const std::uint8_t* address, const std::uint8_t* size, const std::uint8_t* source, std::uint32_t count) = 0;
    virtual void ReadEEPROM(
        const std::uint8_t* address, const std::uint8_t* size, std::uint8_t* target, std::uint32_t count) = 0;
    virtual void WriteCPLD(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c) = 0;
    virtual void ReadCPLD(std::uint8_t* word) = 0;
    virtual void GetMISC(
        std::uint8_t& byte6, std::uint8_t* word0, std::uint8_t& byte7, std::uint8_t* word1, std::uint8_t* word2) = 0;
    // Only the low byte goes to the instrument.
    virtual void Reset(const std::uint8_t* code) = 0;
    // The interrupt latch or the connected state of StateIds.
    virtual std::uint8_t GetDeviceState(std::uint16_t stateId) = 0;
    // Reads a whole strip into the scan FIFO; returns when the instrument has ended it.
    virtual void StartScan(std::uint32_t packetSize, std::uint32_t timeoutSeconds) = 0;
    // Copies the oldest packet of the scan; size 0 when none is left.
    virtual void GetScanData(std::uint8_t* target, std::uint32_t& size) = 0;
    virtual bool OpenDevice(const Utilities::String& address) = 0;
    virtual bool CloseDevice() = 0;
    // 0 for a press of the measurement key, 1 for a lost connection.
    virtual void NotifyObservers(long event) = 0;
    virtual bool IsDeviceOpen() = 0;
    // The lock of the open device's transfers; a lock of its own while there is no device.
    virtual Utilities::Mutex GetDeviceMutex() = 0;

    // The one who hears of the instrument's events; may be null. Events come on other threads.
    void SetOwner(Utilities::Observee<long>* newOwner) { owner.store(newOwner); }
    void ClearOwner() { owner.store(nullptr); }

protected:
    Utilities::Observee<long>* Owner() const { return owner.load(); }

private:
    std::atomic<Utilities::Observee<long>*> owner{nullptr};
};

}
