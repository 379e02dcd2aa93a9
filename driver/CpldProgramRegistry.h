#pragma once

#include <cstdint>
#include <vector>

#include "driver/CpldStep.h"

namespace DeviceDriver {

// The programs for the programmable logic, each named by a number. Item 20000 is a 32-bit word
// and can't carry the address of a program, so a caller enters its program here and writes the
// number it gets into item 20000; the low-level driver runs the program of that number.
class CpldProgramRegistry {
public:
    // The number of the program from now on; never 0, so that an unset item names none.
    static std::uint32_t Add(std::vector<CpldStep> program);
    static void Remove(std::uint32_t number);
    // Fails with ExceptionOutOfBound "CPLD Error: Program not found" for a number that names
    // no program.
    static std::vector<CpldStep> Find(std::uint32_t number);
};

}
