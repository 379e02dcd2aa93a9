#include "driver/PaviloFunctionality_PC.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "driver/ExceptionPaviloCommunication.h"
#include "driver/StateIds.h"
#include "utilities/ComponentCreatorNormal.h"
#include "utilities/MutexLock.h"

namespace DeviceDriver {

namespace {

Utilities::ComponentCreatorNormal<PaviloFunctionality_PC> functionalityCreator(
    "PaviloFunctionality", "$Revision: 1.17 $", "HviInstrument");

constexpr std::uint8_t measureRequestCode = 192;
constexpr std::uint8_t setMeasureParametersCode = 193;
constexpr std::uint8_t getMeasureParametersCode = 194;
constexpr std::uint8_t writeEEPROMCode = 195;
constexpr std::uint8_t readEEPROMCode = 196;
constexpr std::uint8_t writeCPLDCode = 199;
constexpr std::uint8_t readCPLDCode = 200;
constexpr std::uint8_t getMISCCode = 201;
constexpr std::uint8_t resetCode = 202;

constexpr std::uint8_t vendorRequestType = 2;
constexpr std::uint32_t requestDirectionByte = 0;
constexpr std::uint32_t requestTypeByte = 1;
constexpr std::uint32_t requestCodeByte = 4;

constexpr std::uint32_t millisecondsPerSecond = 1000;
constexpr std::uint32_t eepromMillisecondsPerByte = 10;
constexpr std::uint32_t eepromTrailerWrites = 2;

// Runs a command and gives any failure of the foundation's family the operation's prefix, so
// that the layer above tells communication failures from all others.
template<class Work>
auto Guarded(const char* prefix, Work work) -> decltype(work())
{
    try {
        return work();
    } catch (const Utilities::Exception& failure) {
        throw ExceptionPaviloCommunication(Utilities::String(prefix) + *failure.Text());
    }
}

}

PaviloFunctionality_PC::PaviloFunctionality_PC() : request{}, payload{}, payloadLength(0)
{
    request[requestTypeByte] = vendorRequestType;
}

// The device goes first, while its events can still reach this object as what it is.
PaviloFunctionality_PC::~PaviloFunctionality_PC()
{
    device = Utilities::SmartPointer<PaviloUSBDevice>();
}

Utilities::String PaviloFunctionality_PC::GetValueString() const
{
    return Utilities::String("PaviloFunctionality_PC");
}

void PaviloFunctionality_PC::Prepare(std::uint8_t code, Direction direction, std::uint32_t length)
{
    payloadLength = length;
    request[requestCodeByte] = code;
    request[requestDirectionByte] = direction;
}

void PaviloFunctionality_PC::Command(std::uint8_t code, Direction direction, std::uint32_t length)
{
    Prepare(code, direction, length);
    device->PerformDeviceIOControl(request, payload, payloadLength);
}

void PaviloFunctionality_PC::MeasureRequest(std::uint8_t* buffer, std::uint32_t size, std::uint32_t timeoutSeconds)
{
    Guarded("PaviloFunctionality_PC::MeasureRequest ", [&] {
        Prepare(measureRequestCode, HostToInstrument, 0);
        device->RequestAndRead(request, payload, payloadLength, buffer, size, timeoutSeconds * millisecondsPerSecond);
    });
}

void PaviloFunctionality_PC::SetMeasureParameters(
    const std::uint8_t* integration, const std::uint8_t* lamp, const std::uint8_t* count, std::uint8_t flags)
{
    Guarded("PaviloFunctionality_PC::SetMeasureParameters ", [&] {
        std::copy_n(integration, 2, payload);
        std::copy_n(lamp, 2, payload + 2);
        std::copy_n(count, 2, payload + 4);
        payload[6] = flags;
        Command(setMeasureParametersCode, HostToInstrument, 8);
    });
}

void PaviloFunctionality_PC::GetMeasureParameters(
    std::uint8_t* integration, std::uint8_t* lamp, std::uint8_t* count, std::uint8_t& flags)
{
    Guarded("PaviloFunctionality_PC::GetMeasureParameters ", [&] {
        Command(getMeasureParametersCode, InstrumentToHost, 8);
        std::copy_n(payload, 2, integration);
        std::copy_n(payload + 2, 2, lamp);
        std::copy_n(payload + 4, 2, count);
        flags = payload[6];
    });
}

void PaviloFunctionality_PC::WriteEEPROM(
    const std::uint8_t* address, const std::uint8_t* size, const std::uint8_t* source, std::uint32_t count)
{
    Guarded("PaviloFunctionality_PC::WriteEEPROM ", [&] { WriteEEPROMBytes(address, size, source, count); });
}

// The instrument takes two further zero bytes after the data. The request, the data and the
// trailer go under one hold of the device's lock, so that no other transfer comes between them.
void PaviloFunctionality_PC::WriteEEPROMBytes(
    const std::uint8_t* address, const std::uint8_t* size, const std::uint8_t* source, std::uint32_t count)
{
    Utilities::Mutex deviceMutex = device->GetDeviceMutex();
    const Utilities::MutexLock held(deviceMutex);
    std::copy_n(address, 4, payload);
    std::copy_n(size, 2, payload + 4);
    Command(writeEEPROMCode, HostToInstrument, 8);
    device->Write(source, count, count * eepromMillisecondsPerByte);
    const std::uint8_t zero = 0;
    for (std::uint32_t write = 0; write < eepromTrailerWrites; ++write) {
        device->Write(&zero, 1, 0);
    }
}

void PaviloFunctionality_PC::ReadEEPROM(
    const std::uint8_t* address, const std::uint8_t* size, std::uint8_t* target, std::uint32_t count)
{
    Guarded("PaviloFunctionality_PC::ReadEEPROM ", [&] { ReadEEPROMBytes(address, size, target, count); });
}

// The request and the read of its data under one hold of the device's lock.
void PaviloFunctionality_PC::ReadEEPROMBytes(
    const std::uint8_t* address, const std::uint8_t* size, std::uint8_t* target, std::uint32_t count)
{
    Utilities::Mutex deviceMutex = device->GetDeviceMutex();
    const Utilities::MutexLock held(deviceMutex);
    std::copy_n(address, 4, payload);
    std::copy_n(size, 2, payload + 4);
    Command(readEEPROMCode, HostToInstrument, 8);
    device->Read(target, count, count * eepromMillisecondsPerByte);
}

void PaviloFunctionality_PC::WriteCPLD(const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c)
{
    Guarded("PaviloFunctionality_PC::WriteCPLD ", [&] {
        std::copy_n(a, 2, payload);
        std::copy_n(b, 2, payload + 2);
        std::copy_n(c, 2, payload + 4);
        Command(writeCPLDCode, HostToInstrument, 6);
    });
}

void PaviloFunctionality_PC::ReadCPLD(std::uint8_t* word)
{
    Guarded("PaviloFunctionality_PC::ReadCPLD ", [&] {
        Command(readCPLDCode, InstrumentToHost, 2);
        std::copy_n(payload, 2, word);
    });
}

void PaviloFunctionality_PC::GetMISC(
    std::uint8_t& byte6, std::uint8_t* word0, std::uint8_t& byte7, std::uint8_t* word1, std::uint8_t* word2)
{
    Guarded("PaviloFunctionality_PC::GetMISC ", [&] {
        Command(getMISCCode, InstrumentToHost, 8);
        std::copy_n(payload, 2, word0);
        std::copy_n(payload + 2, 2, word1);
        std::copy_n(payload + 4, 2, word2);
        byte6 = payload[6];
        byte7 = payload[7];
    });
}

void PaviloFunctionality_PC::Reset(const std::uint8_t* code)
{
    Guarded("PaviloFunctionality_PC::Reset ", [&] {
        payload[0] = code[1];
        Command(resetCode, HostToInstrument, 1);
    });
}

std::uint8_t PaviloFunctionality_PC::GetDeviceState(std::uint16_t stateId)
{
    return Guarded("PaviloFunctionality_PC::Reset ", [&] { return DeviceState(stateId); });
}

// Whether an instrument is attached is answered also before any device exists: the module may
// have been loaded before the instrument was plugged in.
std::uint8_t PaviloFunctionality_PC::DeviceState(std::uint16_t stateId)
{
    if (stateId == StateIds::interruptLatch) {
        return device->WasInterrupted() ? 1 : 0;
    }
    if (stateId == StateIds::connected) {
        std::vector<Utilities::String> paths;
        PaviloUSBDevice::EnumerateDevices(paths);
        // The path of an instrument that has just gone may still show for a moment; it counts
        // again once it opens.
        if (!device.IsNull() && device->IsLost() && !device->Open()) {
            std::erase(paths, device->GetDeviceName());
        }
        return paths.empty() ? 0 : 1;
    }
    throw ExceptionPaviloCommunication("Device state request not supported");
}

// A strip that fails leaves none of its packets behind, or the next strip would begin with them.
void PaviloFunctionality_PC::StartScan(std::uint32_t packetSize, std::uint32_t timeoutSeconds)
{
    try {
        Guarded("PaviloFunctionality_PC::StartScan ", [&] {
            Command(measureRequestCode, HostToInstrument, 0);
            device->ReadDataStrip(fifo, packetSize, timeoutSeconds * millisecondsPerSecond);
        });
    } catch (...) {
        fifo.Clear();
        throw;
    }
}

// The size stays as the caller gave it; a shorter packet fills only its own bytes.
void PaviloFunctionality_PC::GetScanData(std::uint8_t* target, std::uint32_t& size)
{
    ScanFifo::Packet packet;
    if (!fifo.Pop(packet)) {
        size = 0;
        return;
    }
    std::copy_n(packet.begin(), std::min<std::size_t>(size, packet.size()), target);
}

Utilities::String PaviloFunctionality_PC::ResolveAddress(const Utilities::String& address)
{
    std::vector<Utilities::String> paths;
    if (PaviloUSBDevice::EnumerateDevices(paths) == 0) {
        throw ExceptionPaviloCommunication("PaviloFunctionality_PC::GetDeviceAddress: No devices connected");
    }
    // The instrument object hands down "Default", the settings say "default".
    if (address.ToLower() == Utilities::String("default")) {
        return paths.front();
    }
    if (std::find(paths.begin(), paths.end(), address) == paths.end()) {
        throw ExceptionPaviloCommunication("PaviloFunctionality_PC::GetDeviceAddress: No such device connected");
    }
    return address;
}

bool PaviloFunctionality_PC::OpenDevice(const Utilities::String& address)
{
    try {
        const Utilities::String path = ResolveAddress(address);
        if (!device.IsNull() && device->GetDeviceName() == path) {
            return device->Open();
        }
        device = Utilities::SmartPointer<PaviloUSBDevice>(new PaviloUSBDevice(this, path));
        return true;
    } catch (...) {
        // The low-level driver answers false with "Unable to open the device".
        return false;
    }
}

bool PaviloFunctionality_PC::CloseDevice()
{
    if (!device.IsNull()) {
        device->Shutdown();
    }
    return true;
}

void PaviloFunctionality_PC::NotifyObservers(long event)
{
    if (Utilities::Observee<long>* owner = Owner()) {
        owner->NotifyObservers(event);
    }
}

bool PaviloFunctionality_PC::IsDeviceOpen()
{
    return !device.IsNull() && device->IsOpen();
}

Utilities::Mutex PaviloFunctionality_PC::GetDeviceMutex()
{
    return device.IsNull() ? Utilities::Mutex() : device->GetDeviceMutex();
}

}
