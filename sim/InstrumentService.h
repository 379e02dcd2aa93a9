#pragma once
// A running virtual instrument: the instrument, its cable socket and its control socket, until
// "stop", SIGTERM or SIGINT. Both sockets are gone when Run returns.

#include <string>

#include "sim/Instrument.h"
#include "sim/platform/Daemon.h"

namespace OrbelSim {

class InstrumentService {
public:
    static int Run(const InstrumentOptions& options, const std::string& directory, const Daemon::ReadySignal& ready);
};

} // namespace OrbelSim
