#pragma once

#include <cstdint>

namespace DeviceDriver {

// One step of a program for the instrument's programmable logic: the words a, b and c are
// written; with verify set, the register read back must equal expected in the bits of mask.
// Then the program waits delayMicroseconds, in whole milliseconds.
struct CpldStep {
    std::uint16_t verify = 0;
    std::uint16_t a = 0;
    std::uint16_t b = 0;
    std::uint16_t c = 0;
    std::uint16_t expected = 0;
    std::uint16_t mask = 0;
    std::uint32_t delayMicroseconds = 0;
};

}
