#include "sim/CommandProcessor.h"

#include <stdexcept>

#include "sim/SimLog.h"

namespace OrbelSim {

namespace {

void ExpectWords(const std::vector<std::string>& words, std::size_t count)
{
    if (words.size() != count) {
        throw std::invalid_argument(
            "command '" + words.front() + "' takes " + std::to_string(count - 1) + " argument(s)");
    }
}

} // namespace

CommandProcessor::CommandProcessor(Instrument& instrument, long processId)
    : instrument(instrument), processId(processId)
{
}

unsigned CommandProcessor::ParseCount(const std::string& text)
{
    std::size_t used = 0;
    unsigned long value = 0;
    try {
        value = std::stoul(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || value == 0 || value > 1000000 || text[0] == '-') {
        throw std::invalid_argument("the count must be a whole number from 1 to 1000000, not '" + text + "'");
    }
    return static_cast<unsigned>(value);
}

double CommandProcessor::ParseSpeed(const std::string& text)
{
    std::size_t used = 0;
    double value = 0.0;
    try {
        value = std::stod(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size()) {
        throw std::invalid_argument("the speed must be a number of mm/s, not '" + text + "'");
    }
    return value;
}

CommandReply CommandProcessor::Execute(const std::vector<std::string>& words)
{
    SimLog::Write("command: " + CommandChannel::EncodeCommand(words).substr(0, 200));
    try {
        const std::string& command = words.front();
        if (command == "press" || command == "unplug" || command == "plug" || command == "status") {
            ExpectWords(words, 1);
        }
        if (command == "press") {
            instrument.Press();
        } else if (command == "unplug") {
            instrument.Unplug();
        } else if (command == "plug") {
            instrument.Plug();
        } else if (command == "status") {
            const std::string json = instrument.StatusJson();
            return {true, "{\"pid\":" + std::to_string(processId) + "," + json.substr(1)};
        } else if (command == "place") {
            ExpectWords(words, 2);
            instrument.Place(words[1]);
        } else if (command == "strip") {
            ExpectWords(words, 3);
            instrument.SetStrip(words[1], ParseSpeed(words[2]));
        } else if (command == "fault") {
            ExpectWords(words, 3);
            instrument.Fault(words[1], ParseCount(words[2]));
        } else {
            throw std::invalid_argument("unknown command '" + command + "'");
        }
        return {true, ""};
    } catch (const std::exception& error) {
        SimLog::Write(std::string("command refused: ") + error.what());
        return {false, error.what()};
    }
}

} // namespace OrbelSim
