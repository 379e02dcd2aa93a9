#pragma once
// Lays out the EEPROM's file system as the instrument leaves the factory:
//   0x0000 log data, main copy: the log files in rising id order, then the end mark id 1
//   0x0800 the mirror: the same files with id + 1000, then the end mark id 3
//   0x1000 entry list of 512 bytes: format word 1, used length (entries * 6 + 4), entries of
//          2 bytes id and 4 bytes address in rising order of address; the rest of the block is 0xFF
//   0x1200 calibration files in rising id order, then the end mark id 2
// A file is a run of 32-bit big-endian words and ends where the next entry begins. Unused bytes
// are 0xFF, as in an erased part.
// Item 10000 of each copy is its checksum: the 32-bit sum, with wrap-around, of every word of every
// other log file of that copy (floats by their bit pattern).

#include <cstdint>
#include <map>
#include <vector>

namespace OrbelSim {

using EepromFiles = std::map<std::uint16_t, std::vector<std::uint32_t>>;

class EepromBuilder {
public:
    static constexpr std::uint16_t checksumId = 10000;
    static constexpr std::uint16_t mirrorOffset = 1000;
    static constexpr std::uint32_t logAddress = 0x0000;
    static constexpr std::uint32_t mirrorAddress = 0x0800;
    static constexpr std::uint32_t calibrationAddress = 0x1200;

    // log: the log files without the checksum, which is added here.
    static std::vector<std::uint8_t> Build(const EepromFiles& log, const EepromFiles& calibration);
    static std::uint32_t Checksum(const EepromFiles& log);
    static std::uint32_t FloatBits(float value);
};

} // namespace OrbelSim
