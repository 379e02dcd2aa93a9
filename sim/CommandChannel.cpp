#include "sim/CommandChannel.h"

#include <stdexcept>

#include "sim/platform/UnixSocket.h"

namespace OrbelSim {

std::string CommandChannel::EncodeCommand(const std::vector<std::string>& words)
{
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : "\t") + word;
    }
    return line + "\n";
}

std::vector<std::string> CommandChannel::DecodeCommand(const std::string& line)
{
    std::vector<std::string> words;
    std::string word;
    for (char c : line) {
        if (c == '\n') {
            break;
        }
        if (c == '\t') {
            words.push_back(word);
            word.clear();
        } else {
            word += c;
        }
    }
    words.push_back(word);
    return words;
}

std::string CommandChannel::EncodeReply(const CommandReply& reply)
{
    return (reply.ok ? "ok\t" : "error\t") + reply.text + "\n";
}

CommandReply CommandChannel::DecodeReply(const std::string& text)
{
    const std::size_t tab = text.find('\t');
    if (tab == std::string::npos) {
        return {false, "the instrument gave no answer"};
    }
    std::string body = text.substr(tab + 1);
    if (!body.empty() && body.back() == '\n') {
        body.pop_back();
    }
    return {text.compare(0, tab, "ok") == 0, body};
}

CommandReply CommandChannel::Send(const std::string& controlSocket, const std::vector<std::string>& words)
{
    UnixSocket socket = UnixSocket::Connect(controlSocket);
    if (!socket.WriteAll(EncodeCommand(words))) {
        throw std::runtime_error("unable to send the command to " + controlSocket);
    }
    return DecodeReply(socket.ReadToEnd());
}

} // namespace OrbelSim
