#pragma once
// Runs the instrument in a background process of its own, detached from the terminal and from
// the process that started it, and reports back once it serves (or why it couldn't).

#include <functional>
#include <string>

namespace OrbelSim {

class Daemon {
public:
    // Called once by the background process: ok and the device path, or not ok and a failure text.
    using ReadySignal = std::function<void(bool ok, const std::string& text)>;
    using Service = std::function<int(const ReadySignal& ready)>;

    // In the calling process: waits for the ready signal and gives its text in `message`; the answer
    // is true if the background process serves. logFile: where its standard error goes ("" for none).
    static bool Detach(const std::string& logFile, const Service& service, std::string& message);
    // SIGTERM and SIGINT wake the listener whose wake descriptor is given; SIGPIPE is ignored.
    static void InstallStopSignals(int wakeFd);
    static long ProcessId();
    // Waits at most `milliseconds` for the process to end; true if it has.
    static bool WaitForExit(long processId, int milliseconds);
};

} // namespace OrbelSim
