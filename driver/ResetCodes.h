#pragma once

#include <cstdint>

namespace DeviceDriver {

// The codes that the driver sends with a reset of the instrument; the code says which family of
// operations has failed.
struct ResetCodes {
    static constexpr std::uint16_t conditions = 1;
    static constexpr std::uint16_t eepromRead = 5;
    static constexpr std::uint16_t measurement = 7;
    static constexpr std::uint16_t eepromWrite = 9;
    static constexpr std::uint16_t stateQuestion = 17;
    static constexpr std::uint16_t open = 31;
};

}
