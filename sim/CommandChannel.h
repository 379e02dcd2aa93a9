#pragma once
// The control socket <serial>.ctl through which the orbel-sim program commands a running
// instrument. One command a connection: the words of the command, separated by tabs, and a line
// end. The answer is "ok", a tab and a text (the device path, the status JSON, or empty), or
// "error", a tab and the text for a person, and a line end. After "stop" the instrument closes the
// connection only when it has removed its sockets and is about to end; its answer text is the
// process id, so that the caller can wait for the process to be gone.
//   press | unplug | plug | status | stop
//   place <target> | strip <spec> <speed mm/s> | fault <kind> <count>

#include <string>
#include <vector>

namespace OrbelSim {

struct CommandReply {
    bool ok = false;
    std::string text;
};

class CommandChannel {
public:
    static std::string EncodeCommand(const std::vector<std::string>& words);
    static std::vector<std::string> DecodeCommand(const std::string& line);
    static std::string EncodeReply(const CommandReply& reply);
    static CommandReply DecodeReply(const std::string& text);
    // Sends one command and waits for the connection to close. Raises std::runtime_error when nothing
    // listens at the path.
    static CommandReply Send(const std::string& controlSocket, const std::vector<std::string>& words);
};

} // namespace OrbelSim
