#pragma once
// The instrument as a USB device describes itself: a high-speed vendor-class device with one
// configuration of one interface and its three endpoints, bulk in, bulk out and interrupt in.
// Its ids are the virtual instrument's own, which no real device has.

#include <cstdint>
#include <vector>

namespace OrbelSim {

class UsbDescriptors {
public:
    static constexpr std::uint16_t vendorId = 0xabcd;
    static constexpr std::uint16_t productId = 0x0001;
    static constexpr std::uint8_t bulkIn = 0x82;
    static constexpr std::uint8_t bulkOut = 0x01;
    static constexpr std::uint8_t interruptIn = 0x81;
    static constexpr std::uint16_t bulkMaxPacket = 512;
    static constexpr std::uint16_t interruptMaxPacket = 8;

    // The device descriptor followed by the configuration descriptor with its interface and endpoints.
    static std::vector<std::uint8_t> Bytes();
};

} // namespace OrbelSim
