#include "sim/CommandTable.h"

#include "sim/WireFrame.h"

namespace OrbelSim {

namespace {

struct CommandShape {
    std::uint8_t code;
    std::uint8_t direction;
    std::uint32_t length;
};

constexpr CommandShape commandShapes[] = {
    {CommandTable::measureRequest, 0, 0},
    {CommandTable::setMeasureParameters, 0, 8},
    {CommandTable::getMeasureParameters, 1, 8},
    {CommandTable::writeEeprom, 0, 8},
    {CommandTable::readEeprom, 0, 8},
    {CommandTable::writeCpld, 0, 6},
    {CommandTable::readCpld, 1, 2},
    {CommandTable::getMisc, 1, 8},
    {CommandTable::reset, 0, 1},
};

const CommandShape* FindCommand(std::uint8_t code)
{
    for (const CommandShape& shape : commandShapes) {
        if (shape.code == code) {
            return &shape;
        }
    }
    return nullptr;
}

} // namespace

std::optional<std::string> CommandTable::Refusal(
    const std::vector<std::uint8_t>& setup, const std::vector<std::uint8_t>& payload, std::uint32_t length)
{
    if (setup.size() != WireFrame::controlRequestSize) {
        return "control request of " + std::to_string(setup.size()) + " bytes, not 10";
    }
    const std::uint8_t direction = setup[0];
    const std::uint8_t code = Code(setup);
    if (setup[1] != 2 || setup[2] != 0) {
        return "request type " + std::to_string(setup[1]) + ", recipient " + std::to_string(setup[2]) +
            ": only vendor requests to the device";
    }
    const CommandShape* shape = FindCommand(code);
    if (!shape) {
        return "unknown request code " + std::to_string(code);
    }
    if (direction != shape->direction) {
        return "request " + std::to_string(code) + " with direction " + std::to_string(direction);
    }
    if (length != shape->length || (direction == 0 && payload.size() != length)) {
        return "request " + std::to_string(code) + " with a payload of " +
            std::to_string(direction == 0 ? payload.size() : length) + " bytes, not " + std::to_string(shape->length);
    }
    return std::nullopt;
}

} // namespace OrbelSim
