#pragma once

#include <cstdint>

namespace DeviceDriver {

// The ids of the low-level driver's states, asked with GetState and set with SetState.
struct StateIds {
    // Has the key been pressed since the last question; reading it clears it.
    static constexpr std::uint16_t interruptLatch = 30001;
    // Is an instrument attached; answered with no open connection.
    static constexpr std::uint16_t connected = 30002;
    static constexpr std::uint16_t secondsSinceCalibration = 30003;
    static constexpr std::uint16_t measurementsSinceCalibration = 30004;
    // The number of the filter fitted to the instrument, one of the values below.
    static constexpr std::uint16_t filter = 30005;
    static constexpr std::uint16_t serialNumber = 30006;

    // The value of the filter state for an instrument with an ultraviolet-cut filter.
    static constexpr long filterUVCut = 2;
};

}
