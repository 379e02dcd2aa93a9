#pragma once

#include <cstdint>

namespace DeviceDriver {

// The items of the "PhysicalConditions": what goes to the instrument with the next measurement,
// what the instrument reports of itself, and the commands written as items.
struct ConditionItems {
    // Measure parameters, one wire command for all of them.
    static constexpr std::uint16_t lampOffDuringMeasurement = 2000;
    // Lamp lead time in seconds.
    static constexpr std::uint16_t lampTime = 2001;
    static constexpr std::uint16_t gain = 2002;
    static constexpr std::uint16_t lampOnAfterMeasurement = 2003;
    static constexpr std::uint16_t countFromReplacementItem = 2008;
    // Seconds.
    static constexpr std::uint16_t integrationTime = 2009;
    // Readings per request, at most 256.
    static constexpr std::uint16_t count = 2010;

    // Read only, from the instrument's MISC answer.
    static constexpr std::uint16_t status = 2004;
    static constexpr std::uint16_t miscWord1 = 2006;
    static constexpr std::uint16_t miscByte6 = 2012;
    static constexpr std::uint16_t miscWord0 = 2013;
    // The level above which a measurement word has wrapped below zero.
    static constexpr std::uint16_t wrapThreshold = 2020;

    // Has a default and no use in the host.
    static constexpr std::uint16_t reserved = 2005;
    // Write only: writing it resets the instrument with the item's value as the code.
    static constexpr std::uint16_t reset = 2007;
    // Stays in the host: the handle adapts the integration time before the measurement.
    static constexpr std::uint16_t adaptIntegrationTime = 2011;
    // Kept in the EEPROM, read and written through the calibration data.
    static constexpr std::uint16_t storedCondition = 3010;
    // The client's count of readings, used in place of `count` when `countFromReplacementItem` is set.
    static constexpr std::uint16_t replacementCount = 9189;
    // Write only: the number of a registered programmable-logic program to run.
    static constexpr std::uint16_t cpldProgram = 20000;
};

}
