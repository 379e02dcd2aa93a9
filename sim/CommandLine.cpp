#include "sim/CommandLine.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <ostream>
#include <set>
#include <stdexcept>

#include "sim/CommandChannel.h"
#include "sim/Eeprom.h"
#include "sim/InstrumentService.h"
#include "sim/SimLog.h"
#include "sim/platform/Daemon.h"
#include "sim/platform/SimDirectory.h"
#include "sim/platform/UsbBridge.h"

namespace OrbelSim {

namespace {

const char* const usage =
    "usage: orbel-sim COMMAND [options]\n"
    "  start [--serial N] [--uv-cut] [--noise on|off] [--time-scale F] [--foreground] [--eeprom FILE] [--verbose]\n"
    "  stop | unplug | plug | press | status [--serial N]\n"
    "  place TARGET [--serial N]     tile, black, sample:<name>, reflectance:<file>, emission:<file>,\n"
    "                                display:<name>, light:<name>\n"
    "  strip SPEC [--speed MM_PER_S] [--serial N]   builtin:<name> or a file of patches\n"
    "  fault KIND [--count N] [--serial N]   control-timeout, bulk-timeout, short-read, low-power, drop,\n"
    "                                erase-eeprom, break-log-main, break-log-mirror\n"
    "  usb-run [--serial N] [--verbose] -- COMMAND [ARGS...]   runs COMMAND with the running instrument\n"
    "                                as a USB device (umockdev), ORBEL_USB_ID set and ORBEL_VIRTUAL=off\n"
    "The time scale multiplies every duration of the instrument: 0.01 runs a hundred times faster.\n";

struct UsageError : std::invalid_argument {
    using std::invalid_argument::invalid_argument;
};

struct Arguments {
    std::string command;
    std::vector<std::string> positional;
    std::map<std::string, std::string> options;
};

constexpr int stopWaitMs = 5000;

const std::set<std::string> valueOptions = {"--serial", "--noise", "--time-scale", "--eeprom", "--count", "--speed"};
const std::set<std::string> flagOptions = {"--uv-cut", "--foreground", "--verbose"};

const std::map<std::string, std::pair<std::size_t, std::set<std::string>>> commandOptions = {
    {"start", {0, {"--serial", "--uv-cut", "--noise", "--time-scale", "--foreground", "--eeprom", "--verbose"}}},
    {"stop", {0, {"--serial", "--verbose"}}},
    {"unplug", {0, {"--serial", "--verbose"}}},
    {"plug", {0, {"--serial", "--verbose"}}},
    {"press", {0, {"--serial", "--verbose"}}},
    {"status", {0, {"--serial", "--verbose"}}},
    {"place", {1, {"--serial", "--verbose"}}},
    {"strip", {1, {"--serial", "--speed", "--verbose"}}},
    {"fault", {1, {"--serial", "--count", "--verbose"}}},
    {"usb-run", {0, {"--serial", "--verbose"}}},
};

Arguments Parse(const std::vector<std::string>& args)
{
    Arguments parsed;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (valueOptions.count(arg)) {
            if (i + 1 >= args.size()) {
                throw UsageError("option " + arg + " needs a value");
            }
            parsed.options[arg] = args[++i];
        } else if (flagOptions.count(arg)) {
            parsed.options[arg] = "";
        } else if (arg.rfind("--", 0) == 0) {
            throw UsageError("unknown option " + arg);
        } else if (parsed.command.empty()) {
            parsed.command = arg;
        } else {
            parsed.positional.push_back(arg);
        }
    }
    const auto command = commandOptions.find(parsed.command);
    if (command == commandOptions.end()) {
        throw UsageError(parsed.command.empty() ? "no command given" : "unknown command '" + parsed.command + "'");
    }
    if (parsed.positional.size() != command->second.first) {
        throw UsageError(
            "command '" + parsed.command + "' takes " + std::to_string(command->second.first) + " argument(s)");
    }
    for (const auto& [option, value] : parsed.options) {
        if (!command->second.second.count(option)) {
            throw UsageError("option " + option + " doesn't apply to '" + parsed.command + "'");
        }
    }
    return parsed;
}

std::uint32_t ParseSerial(const Arguments& arguments)
{
    const auto found = arguments.options.find("--serial");
    if (found == arguments.options.end()) {
        return CommandLine::defaultSerial;
    }
    const std::string& text = found->second;
    std::size_t used = 0;
    unsigned long long value = 0;
    try {
        value = std::stoull(text, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || text[0] == '-' || value == 0 || value > 0xFFFFFFFFull) {
        throw UsageError("the serial number must be a whole number from 1 to 4294967295, not '" + text + "'");
    }
    return static_cast<std::uint32_t>(value);
}

double ParseTimeScale(const Arguments& arguments)
{
    const auto found = arguments.options.find("--time-scale");
    if (found == arguments.options.end()) {
        return 1.0;
    }
    std::size_t used = 0;
    double value = -1.0;
    try {
        value = std::stod(found->second, &used);
    } catch (const std::exception&) {
        used = 0;
    }
    if (used == 0 || used != found->second.size() || !(value >= 0.0 && value <= 1000.0)) {
        throw UsageError("the time scale must be a number from 0 to 1000, not '" + found->second + "'");
    }
    return value;
}

bool ParseNoise(const Arguments& arguments)
{
    const auto found = arguments.options.find("--noise");
    if (found == arguments.options.end() || found->second == "on") {
        return true;
    }
    if (found->second == "off") {
        return false;
    }
    throw UsageError("--noise takes on or off, not '" + found->second + "'");
}

std::string Absolute(const std::string& path)
{
    return std::filesystem::absolute(path).string();
}

// Files are read by the running instrument, whose working directory is another.
std::string WithAbsoluteFile(const std::string& spec)
{
    for (const std::string prefix : {"reflectance:", "emission:"}) {
        if (spec.rfind(prefix, 0) == 0 && spec.size() > prefix.size()) {
            return prefix + Absolute(spec.substr(prefix.size()));
        }
    }
    return spec;
}

std::string StripSpec(const std::string& spec)
{
    return spec.rfind("builtin:", 0) == 0 || spec.empty() ? spec : Absolute(spec);
}

std::vector<std::string> CommandWords(const Arguments& arguments)
{
    if (arguments.command == "place") {
        return {"place", WithAbsoluteFile(arguments.positional[0])};
    }
    if (arguments.command == "strip") {
        const auto speed = arguments.options.find("--speed");
        return {"strip", StripSpec(arguments.positional[0]), speed == arguments.options.end() ? "80" : speed->second};
    }
    if (arguments.command == "fault") {
        const auto count = arguments.options.find("--count");
        return {"fault", arguments.positional[0], count == arguments.options.end() ? "1" : count->second};
    }
    return {arguments.command};
}

bool Answers(const std::string& controlSocket)
{
    try {
        CommandChannel::Send(controlSocket, {"status"});
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

int Start(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    InstrumentOptions options;
    options.serial = ParseSerial(arguments);
    options.uvCut = arguments.options.count("--uv-cut") > 0;
    options.noise = ParseNoise(arguments);
    options.timeScale = ParseTimeScale(arguments);
    if (const auto file = arguments.options.find("--eeprom"); file != arguments.options.end()) {
        options.eepromFile = Absolute(file->second);
        options.eepromImage = Eeprom::LoadFile(options.eepromFile);
    }
    const bool verbose = arguments.options.count("--verbose") > 0;
    const std::string directory = SimDirectory::Resolve();
    SimDirectory::Ensure(directory);
    const std::string control = SimDirectory::ControlSocket(directory, options.serial);
    if (SimDirectory::Exists(control) && Answers(control)) {
        err << "orbel-sim: an instrument with serial " << options.serial << " runs already (sim:" << options.serial
            << ")\n";
        return 1;
    }
    SimDirectory::Remove(control);
    SimDirectory::Remove(SimDirectory::DeviceSocket(directory, options.serial));
    SimDirectory::Remove(SimDirectory::DevicePortFile(directory, options.serial));
    SimLog::SetVerbose(verbose);
    if (arguments.options.count("--foreground")) {
        return InstrumentService::Run(options, directory, [&](bool ok, const std::string& text) {
            (ok ? out : err) << (ok ? "" : "orbel-sim: ") << text << std::endl;
        });
    }
    std::string message;
    const bool started = Daemon::Detach(
        verbose ? SimDirectory::LogFile(directory, options.serial) : "",
        [&](const Daemon::ReadySignal& ready) { return InstrumentService::Run(options, directory, ready); }, message);
    (started ? out : err) << (started ? "" : "orbel-sim: ") << message << "\n";
    return started ? 0 : 1;
}

int Command(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    const std::uint32_t serial = ParseSerial(arguments);
    const std::vector<std::string> words = CommandWords(arguments);
    const std::string control = SimDirectory::ControlSocket(SimDirectory::Resolve(), serial);
    CommandReply reply;
    try {
        reply = CommandChannel::Send(control, words);
    } catch (const std::runtime_error&) {
        err << "orbel-sim: no instrument with serial " << serial << " is running\n";
        return 1;
    }
    if (!reply.ok) {
        err << "orbel-sim: " << reply.text << "\n";
        return 1;
    }
    if (arguments.command == "stop") {
        return Daemon::WaitForExit(std::stol(reply.text), stopWaitMs) ? 0 : 1;
    }
    if (!reply.text.empty()) {
        out << reply.text << "\n";
    }
    return 0;
}

int UsbRun(const std::vector<std::string>& args, std::ostream& err)
{
    const auto split = std::find(args.begin(), args.end(), "--");
    if (split == args.end() || split + 1 == args.end()) {
        throw UsageError("usb-run needs the command to run after --");
    }
    const Arguments arguments = Parse({args.begin(), split});
    const std::string failure = UsbBridge::Exec(SimDirectory::Resolve(), ParseSerial(arguments),
        arguments.options.count("--verbose") > 0, {split + 1, args.end()});
    err << "orbel-sim: " << failure << "\n";
    return 1;
}

} // namespace

int CommandLine::Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err)
{
    if (args.size() == 1 && (args[0] == "--help" || args[0] == "help")) {
        out << usage;
        return 0;
    }
    try {
        if (!args.empty() && args[0] == "usb-run") {
            return UsbRun(args, err);
        }
        const Arguments arguments = Parse(args);
        return arguments.command == "start" ? Start(arguments, out, err) : Command(arguments, out, err);
    } catch (const UsageError& error) {
        err << "orbel-sim: " << error.what() << "\n" << usage;
        return 2;
    } catch (const std::exception& error) {
        err << "orbel-sim: " << error.what() << "\n";
        return 1;
    }
}

} // namespace OrbelSim
