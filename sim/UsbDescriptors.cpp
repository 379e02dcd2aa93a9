#include "sim/UsbDescriptors.h"

namespace OrbelSim {

namespace {

// Descriptor types and the values of USB 2.0, chapter 9.
constexpr std::uint8_t deviceType = 1;
constexpr std::uint8_t configurationType = 2;
constexpr std::uint8_t interfaceType = 4;
constexpr std::uint8_t endpointType = 5;
constexpr std::uint8_t vendorClass = 0xFF;
constexpr std::uint8_t bulk = 2;
constexpr std::uint8_t interrupt = 3;
constexpr std::uint8_t selfPowered = 0xC0;
constexpr std::uint8_t maxPower100mA = 50;
constexpr std::uint8_t interruptIntervalExponent = 4;
constexpr std::uint8_t endpointCount = 3;
constexpr std::uint8_t endpointLength = 7;
constexpr std::uint8_t interfaceLength = 9;
constexpr std::uint8_t configurationLength = 9;

void PutWord(std::vector<std::uint8_t>& out, std::uint16_t value)
{
    out.push_back(static_cast<std::uint8_t>(value & 0xFF));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void PutEndpoint(std::vector<std::uint8_t>& out, std::uint8_t address, std::uint8_t type, std::uint16_t maxPacket,
    std::uint8_t interval)
{
    out.insert(out.end(), {endpointLength, endpointType, address, type});
    PutWord(out, maxPacket);
    out.push_back(interval);
}

}

std::vector<std::uint8_t> UsbDescriptors::Bytes()
{
    std::vector<std::uint8_t> out = {18, deviceType};
    PutWord(out, 0x0200);
    out.insert(out.end(), {vendorClass, 0, 0, 64});
    PutWord(out, vendorId);
    PutWord(out, productId);
    PutWord(out, 0x0100);
    out.insert(out.end(), {0, 0, 0, 1});
    const std::uint16_t total = configurationLength + interfaceLength + endpointCount * endpointLength;
    out.insert(out.end(), {configurationLength, configurationType});
    PutWord(out, total);
    out.insert(out.end(), {1, 1, 0, selfPowered, maxPower100mA});
    out.insert(out.end(), {interfaceLength, interfaceType, 0, 0, endpointCount, vendorClass, 0, 0, 0});
    PutEndpoint(out, bulkIn, bulk, bulkMaxPacket, 0);
    PutEndpoint(out, bulkOut, bulk, bulkMaxPacket, 0);
    PutEndpoint(out, interruptIn, interrupt, interruptMaxPacket, interruptIntervalExponent);
    return out;
}

} // namespace OrbelSim
