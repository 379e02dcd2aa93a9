#pragma once
// Carries out the commands that reach a running instrument through its control socket
// (CommandChannel.h), except "stop", which ends the service that owns the processor.

#include <string>
#include <vector>

#include "sim/CommandChannel.h"
#include "sim/Instrument.h"

namespace OrbelSim {

class CommandProcessor {
public:
    CommandProcessor(Instrument& instrument, long processId);

    CommandReply Execute(const std::vector<std::string>& words);

private:
    static unsigned ParseCount(const std::string& text);
    static double ParseSpeed(const std::string& text);

    Instrument& instrument;
    long processId;
};

} // namespace OrbelSim
