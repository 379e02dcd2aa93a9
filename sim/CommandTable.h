#pragma once
// The request codes of the control pipe and the shape each must have.
//
// Command table (request code, direction, payload length):
//   192 MeasureRequest          0, 0  starts `count` measurements with the present parameters; the
//                                     blocks of 256 bytes (128 big-endian words, word 127 is 0) are
//                                     ready after lamp time + count * integration time. With flag
//                                     bit 0 set it starts a scan instead (see below).
//   193 SetMeasureParameters    0, 8  integration ticks (68 us), lamp ticks (130 integration ticks),
//                                     count, flags (bit 0 scan, bit 1 lamp off, bit 2 gain 1, bit 3
//                                     lamp on after), byte 7 ignored
//   194 GetMeasureParameters    1, 8  the same; byte 7 is 0
//   195 WriteEEPROM             0, 8  address (4), size (2); then `size` bytes on bulk-out, then
//                                     one-byte writes of 0x00, which are accepted
//   196 ReadEEPROM              0, 8  address (4), size (2); then `size` bytes on bulk-in
//   199 WriteCPLD               0, 6  words a, b, c: register a of the programmable logic := b; c is
//                                     kept beside it
//   200 ReadCPLD                1, 2  the register last written
//   201 GetMISC                 1, 8  word 0 firmware 0x0102, word 1 hardware 0x0001, word 2 the wrap
//                                     threshold 0xF000, byte 6 instrument kind 1, byte 7 status (8 =
//                                     not enough power, else 0)
//   202 Reset                   0, 1  the code; ends the connection's pending bulk data and EEPROM
//                                     write, switches the lamp off
// Anything else, a wrong direction, request type other than 2 (vendor), recipient other than 0,
// a wrong payload length, an EEPROM range past 8192, or a count of 0 is stalled.
//
// Scan: the hand draws the instrument across the strip (or across what is placed, if no strip is
// set) at the strip's speed, one measurement per integration time after the lamp time. The
// measurements travel as packets of `count` measurements; their number is rounded up to whole
// packets (the hand rests on the last patch). A bulk read completes when all its bytes are
// measured; the read that finds the strip's end gets what is left, fewer bytes than asked (status
// short); if the end falls on a read's boundary the next read gets 0 bytes.
//
// Bulk-in data are kept per connection: a request's data go to the connection that asked.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace OrbelSim {

class CommandTable {
public:
    static constexpr std::uint8_t measureRequest = 192;
    static constexpr std::uint8_t setMeasureParameters = 193;
    static constexpr std::uint8_t getMeasureParameters = 194;
    static constexpr std::uint8_t writeEeprom = 195;
    static constexpr std::uint8_t readEeprom = 196;
    static constexpr std::uint8_t writeCpld = 199;
    static constexpr std::uint8_t readCpld = 200;
    static constexpr std::uint8_t getMisc = 201;
    static constexpr std::uint8_t reset = 202;

    // Why the instrument stalls this control request; empty when the table accepts it.
    static std::optional<std::string> Refusal(
        const std::vector<std::uint8_t>& setup, const std::vector<std::uint8_t>& payload, std::uint32_t length);
    static std::uint8_t Code(const std::vector<std::uint8_t>& setup) { return setup[4]; }
};

} // namespace OrbelSim
