#pragma once
// The request codes of the control pipe and the shape each must have (see Instrument.h).

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
