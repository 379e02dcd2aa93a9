#include "plugins/console/ConsoleMessageService.h"

#include <algorithm>

namespace Plugins {

ConsoleMessageService::ConsoleMessageService() : ConsoleMessageService(stdout) { }

ConsoleMessageService::ConsoleMessageService(std::FILE* output) : output(output) { }

Diagnostics::String ConsoleMessageService::GetValueString() const
{
    std::lock_guard<std::mutex> guard(lock);
    Diagnostics::String text("ConsoleMessageService: ");
    text += static_cast<long>(subscribers.size());
    text += " subscribed names";
    return text;
}

void ConsoleMessageService::Post(const Utilities::String& name, const Utilities::Anything& value)
{
    Print(name, value);
    for (Callback callback : SubscribersOf(name)) {
        callback(name, value);
    }
}

void ConsoleMessageService::Subscribe(const Utilities::String& name, Callback callback)
{
    std::lock_guard<std::mutex> guard(lock);
    std::vector<Callback>& ofName = subscribers[name.ToStdString()];
    if (std::find(ofName.begin(), ofName.end(), callback) == ofName.end()) {
        ofName.push_back(callback);
    }
}

void ConsoleMessageService::Unsubscribe(Callback callback)
{
    std::lock_guard<std::mutex> guard(lock);
    for (auto& entry : subscribers) {
        std::erase(entry.second, callback);
    }
}

// One write per line, so that lines of events posted at once from two threads don't mix.
void ConsoleMessageService::Print(const Utilities::String& name, const Utilities::Anything& value)
{
    std::string line = "Event " + name.ToStdString();
    if (value.IsValid()) {
        line += " ";
        line += value.GetValueString().CString();
    }
    line += "\n";
    std::fputs(line.c_str(), output);
    std::fflush(output);
}

// The callbacks are called outside the lock, so that one may subscribe or unsubscribe.
std::vector<ConsoleMessageService::Callback> ConsoleMessageService::SubscribersOf(const Utilities::String& name) const
{
    std::lock_guard<std::mutex> guard(lock);
    const auto found = subscribers.find(name.ToStdString());
    return found == subscribers.end() ? std::vector<Callback>() : found->second;
}

}
