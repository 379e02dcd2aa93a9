#include "tools/Application.h"

#include <algorithm>

#include "orbel.h"
#include "tools/CalibrateCommand.h"
#include "tools/CliError.h"
#include "tools/ConvertCommand.h"
#include "tools/DemoCommand.h"
#include "tools/InfoCommand.h"
#include "tools/MeasureCommand.h"
#include "tools/ScanCommand.h"
#include "tools/SubstrateCommand.h"

namespace OrbelCli {

Application::Application()
{
    commands.push_back(std::make_unique<InfoCommand>());
    commands.push_back(std::make_unique<CalibrateCommand>());
    commands.push_back(std::make_unique<MeasureCommand>());
    commands.push_back(std::make_unique<ScanCommand>());
    commands.push_back(std::make_unique<SubstrateCommand>());
    commands.push_back(std::make_unique<ConvertCommand>());
    commands.push_back(std::make_unique<DemoCommand>());
}

std::string Application::Help() const
{
    std::string text = "usage: orbel COMMAND [options]    (orbel COMMAND --help for its options and examples)\n\n"
                       "The hand-held spectrophotometer from the command line.\n\ncommands:\n";
    for (const auto& command : commands) {
        text += "  " + command->Name() + std::string(12 - command->Name().size(), ' ') + command->Brief() + "\n";
    }
    return text + "\nWithout an instrument, plug in a virtual one first: build/sim/orbel-sim start\n";
}

Command* Application::Find(const std::string& name) const
{
    const auto found = std::find_if(commands.begin(), commands.end(), [&](const auto& c) { return c->Name() == name; });
    return found == commands.end() ? nullptr : found->get();
}

std::string Application::Advice(int status)
{
    switch (status) {
    case OB_DeviceNotCalibrated:
        return "Calibrate first: orbel calibrate (orbel scan calibrates by itself).";
    case OB_NoSubstrateWhiteReference:
        return "Densities need a paper white: orbel substrate --output paper.txt, then --substrate paper.txt.";
    case OB_StripRecognitionFailed:
        return "Draw the instrument across the whole strip at an even pace, or scan without --recognition.";
    case CliError::UsageStatus:
        return "See orbel --help.";
    default:
        return "";
    }
}

int Application::RunCommand(
    Command& command, const std::vector<std::string>& words, std::ostream& out, std::ostream& messages)
{
    if (std::find(words.begin(), words.end(), "--help") != words.end() ||
        std::find(words.begin(), words.end(), "-h") != words.end()) {
        out << command.Help();
        return 0;
    }
    const Arguments arguments(command.Name(), words, command.Options());
    if (!arguments.Positional().empty()) {
        // Appended piece by piece: GCC 12 at -O3 sees a false overlap (-Wrestrict) in "'" + name.
        std::string message("'");
        message.append(command.Name())
            .append("' takes no argument '")
            .append(arguments.Positional().front())
            .append("'");
        throw CliError::Usage(message);
    }
    return command.Run(arguments, out, messages);
}

int Application::Run(const std::vector<std::string>& words, std::ostream& out, std::ostream& messages)
{
    if (words.empty() || words.front() == "--help" || words.front() == "-h" || words.front() == "help") {
        out << Help();
        return words.empty() ? CliError::UsageStatus : 0;
    }
    if (words.front() == "--version") {
        out << "orbel " ORBEL_VERSION ", module " << OB_GetDeviceInfo("Version") << '\n';
        return 0;
    }
    try {
        Command* command = Find(words.front());
        if (!command) {
            throw CliError::Usage("unknown command '" + words.front() + "'");
        }
        return RunCommand(*command, {words.begin() + 1, words.end()}, out, messages);
    } catch (const CliError& error) {
        out.flush();
        messages << "orbel: " << error.what() << '\n';
        const std::string advice = Advice(error.ExitStatus());
        if (!advice.empty()) {
            messages << advice << '\n';
        }
        return error.ExitStatus();
    }
}

}
