#include "sim/InstrumentService.h"

#include <optional>

#include "sim/CommandChannel.h"
#include "sim/CommandProcessor.h"
#include "sim/DeviceServer.h"
#include "sim/SimLog.h"
#include "sim/platform/SimDirectory.h"
#include "sim/platform/UnixSocket.h"

namespace OrbelSim {

namespace {

constexpr std::size_t maxCommandLength = 65536;
constexpr int commandWaitMs = 2000;

// Serves commands until "stop" (its connection is handed back, to be closed last) or a signal.
std::optional<UnixSocket> ServeCommands(UnixListener& control, CommandProcessor& processor)
{
    while (auto client = control.Accept()) {
        std::string line;
        if (!client->ReadLine(line, maxCommandLength, commandWaitMs)) {
            client->WriteAll(CommandChannel::EncodeReply({false, "incomplete command"}));
            continue;
        }
        const std::vector<std::string> words = CommandChannel::DecodeCommand(line);
        if (words.size() == 1 && words.front() == "stop") {
            SimLog::Write("command: stop");
            client->WriteAll(CommandChannel::EncodeReply({true, std::to_string(Daemon::ProcessId())}));
            return std::move(*client);
        }
        client->WriteAll(CommandChannel::EncodeReply(processor.Execute(words)));
    }
    SimLog::Write("stopped by a signal");
    return std::nullopt;
}

} // namespace

int InstrumentService::Run(
    const InstrumentOptions& options, const std::string& directory, const Daemon::ReadySignal& ready)
{
    std::optional<UnixSocket> stopClient;
    bool announced = false;
    try {
        Instrument instrument(options);
        DeviceServer server(instrument, SimDirectory::DeviceSocket(directory, options.serial),
            SimDirectory::DevicePortFile(directory, options.serial));
        UnixListener control(SimDirectory::ControlSocket(directory, options.serial));
        instrument.SetCableListener([&server](bool plugged) {
            if (plugged) {
                server.Listen();
            } else {
                server.StopListening();
            }
        });
        Daemon::InstallStopSignals(control.WakeFd());
        server.Listen();
        ready(true, "sim:" + std::to_string(options.serial));
        announced = true;
        CommandProcessor processor(instrument, Daemon::ProcessId());
        stopClient = ServeCommands(control, processor);
        instrument.SetCableListener({});
    } catch (const std::exception& error) {
        if (announced) {
            SimLog::Write(std::string("ended by a failure: ") + error.what());
        } else {
            ready(false, error.what());
        }
        return 1;
    }
    return 0;
}

} // namespace OrbelSim
