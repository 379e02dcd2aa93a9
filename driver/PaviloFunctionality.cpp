#include "driver/PaviloFunctionality.h"

#include <algorithm>
#include <bit>

#include "driver/ExceptionPaviloCommunication.h"
#include "utilities/ResolveAs.h"

namespace DeviceDriver {

PaviloFunctionality::PaviloFunctionality()
    : imageSize(ImageSize), functionality(Utilities::ResolveAs<PaviloFunctionalityByte>("PaviloFunctionality"))
{
}

PaviloFunctionality::~PaviloFunctionality() = default;

void PaviloFunctionality::ToBytes(std::uint16_t value, std::uint8_t* bytes)
{
    bytes[0] = static_cast<std::uint8_t>(value >> 8);
    bytes[1] = static_cast<std::uint8_t>(value);
}

void PaviloFunctionality::ToBytes(std::uint32_t value, std::uint8_t* bytes)
{
    bytes[0] = static_cast<std::uint8_t>(value >> 24);
    bytes[1] = static_cast<std::uint8_t>(value >> 16);
    bytes[2] = static_cast<std::uint8_t>(value >> 8);
    bytes[3] = static_cast<std::uint8_t>(value);
}

void PaviloFunctionality::ToBytes(float value, std::uint8_t* bytes)
{
    ToBytes(std::bit_cast<std::uint32_t>(value), bytes);
}

std::uint16_t PaviloFunctionality::U16FromBytes(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>((bytes[0] << 8) | bytes[1]);
}

std::uint32_t PaviloFunctionality::U32FromBytes(const std::uint8_t* bytes)
{
    return (static_cast<std::uint32_t>(bytes[0]) << 24) | (static_cast<std::uint32_t>(bytes[1]) << 16) |
        (static_cast<std::uint32_t>(bytes[2]) << 8) | bytes[3];
}

float PaviloFunctionality::FloatFromBytes(const std::uint8_t* bytes)
{
    return std::bit_cast<float>(U32FromBytes(bytes));
}

std::uint8_t PaviloFunctionality::GetDeviceState(std::uint16_t stateId)
{
    return functionality->GetDeviceState(stateId);
}

void PaviloFunctionality::StartScan(std::uint32_t packetSize, std::uint32_t timeoutSeconds)
{
    functionality->StartScan(packetSize, timeoutSeconds);
}

void PaviloFunctionality::MeasureRequest(std::uint8_t* buffer, std::uint32_t size, std::uint32_t timeoutSeconds)
{
    functionality->MeasureRequest(buffer, size, timeoutSeconds);
}

void PaviloFunctionality::SetMeasureParameters(
    std::uint16_t integration, std::uint16_t lamp, std::uint16_t count, std::uint8_t flags)
{
    std::uint8_t integrationBytes[2];
    std::uint8_t lampBytes[2];
    std::uint8_t countBytes[2];
    ToBytes(integration, integrationBytes);
    ToBytes(lamp, lampBytes);
    ToBytes(count, countBytes);
    functionality->SetMeasureParameters(integrationBytes, lampBytes, countBytes, flags);
}

void PaviloFunctionality::GetMeasureParameters(
    std::uint16_t& integration, std::uint16_t& lamp, std::uint16_t& count, std::uint8_t& flags)
{
    std::uint8_t integrationBytes[2];
    std::uint8_t lampBytes[2];
    std::uint8_t countBytes[2];
    functionality->GetMeasureParameters(integrationBytes, lampBytes, countBytes, flags);
    integration = U16FromBytes(integrationBytes);
    lamp = U16FromBytes(lampBytes);
    count = U16FromBytes(countBytes);
}

void PaviloFunctionality::WriteEEPROM(
    std::uint32_t address, std::uint16_t size, const std::uint8_t* source, std::uint32_t count)
{
    CheckRange("PaviloFunctionality::WriteEEPROM ", address, count);
    std::uint8_t addressBytes[4];
    std::uint8_t sizeBytes[2];
    ToBytes(address, addressBytes);
    ToBytes(size, sizeBytes);
    functionality->WriteEEPROM(addressBytes, sizeBytes, source, count);
    LoadImage();
    std::copy_n(source, count, image.get() + address);
}

void PaviloFunctionality::ReadEEPROM(
    std::uint32_t address, std::uint16_t size, std::uint8_t* target, std::uint32_t count)
{
    static_cast<void>(size);
    CheckRange("PaviloFunctionality::ReadEEPROM ", address, count);
    LoadImage();
    std::copy_n(image.get() + address, count, target);
}

void PaviloFunctionality::CheckRange(const char* operation, std::uint32_t address, std::uint32_t count)
{
    if (address > ImageSize || count > ImageSize - address) {
        throw ExceptionPaviloCommunication(Utilities::String(operation) + "address out of range");
    }
}

void PaviloFunctionality::LoadImage()
{
    if (image) {
        return;
    }
    auto loaded = std::make_unique<std::uint8_t[]>(imageSize);
    std::uint8_t addressBytes[4];
    std::uint8_t sizeBytes[2];
    ToBytes(std::uint32_t{0}, addressBytes);
    ToBytes(imageSize, sizeBytes);
    functionality->ReadEEPROM(addressBytes, sizeBytes, loaded.get(), imageSize);
    image = std::move(loaded);
}

void PaviloFunctionality::WriteCPLD(std::uint16_t a, std::uint16_t b, std::uint16_t c)
{
    std::uint8_t aBytes[2];
    std::uint8_t bBytes[2];
    std::uint8_t cBytes[2];
    ToBytes(a, aBytes);
    ToBytes(b, bBytes);
    ToBytes(c, cBytes);
    functionality->WriteCPLD(aBytes, bBytes, cBytes);
}

void PaviloFunctionality::ReadCPLD(std::uint16_t& word)
{
    std::uint8_t bytes[2];
    functionality->ReadCPLD(bytes);
    word = U16FromBytes(bytes);
}

void PaviloFunctionality::GetMISC(
    std::uint8_t& byte6, std::uint16_t& word0, std::uint8_t& byte7, std::uint16_t& word1, std::uint16_t& word2)
{
    std::uint8_t word0Bytes[2];
    std::uint8_t word1Bytes[2];
    std::uint8_t word2Bytes[2];
    functionality->GetMISC(byte6, word0Bytes, byte7, word1Bytes, word2Bytes);
    word0 = U16FromBytes(word0Bytes);
    word1 = U16FromBytes(word1Bytes);
    word2 = U16FromBytes(word2Bytes);
}

void PaviloFunctionality::Reset(std::uint16_t code)
{
    std::uint8_t bytes[2];
    ToBytes(code, bytes);
    functionality->Reset(bytes);
}

void PaviloFunctionality::GetScanData(std::uint8_t* target, std::uint32_t& size)
{
    functionality->GetScanData(target, size);
}

bool PaviloFunctionality::IsDeviceOpen()
{
    return functionality->IsDeviceOpen();
}

Utilities::Mutex PaviloFunctionality::GetDeviceMutex()
{
    return functionality->GetDeviceMutex();
}

bool PaviloFunctionality::OpenDevice(const Utilities::String& address)
{
    const bool opened = functionality->OpenDevice(address);
    image.reset();
    return opened;
}

bool PaviloFunctionality::CloseDevice()
{
    const bool closed = functionality->CloseDevice();
    image.reset();
    return closed;
}

void PaviloFunctionality::SetOwner(Utilities::Observee<long>* owner)
{
    functionality->SetOwner(owner);
}

void PaviloFunctionality::ClearOwner()
{
    functionality->ClearOwner();
}

}
