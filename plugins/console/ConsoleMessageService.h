#pragma once

#include <cstdio>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "manager/MessageService.h"

namespace Plugins {

// Prints every event that it is given as one line on the standard output, "Event " and the
// name, then the value when there is one, and hands it on to the subscribers of the name on
// the thread that posts it.
class ConsoleMessageService : public GUI::MessageService {
public:
    ConsoleMessageService();
    explicit ConsoleMessageService(std::FILE* output);

    Diagnostics::String GetValueString() const override;
    void Post(const Utilities::String& name, const Utilities::Anything& value) override;
    void Subscribe(const Utilities::String& name, Callback callback) override;
    void Unsubscribe(Callback callback) override;

private:
    void Print(const Utilities::String& name, const Utilities::Anything& value);
    std::vector<Callback> SubscribersOf(const Utilities::String& name) const;

    std::FILE* output;
    mutable std::mutex lock;
    std::map<std::string, std::vector<Callback>> subscribers;
};

}
