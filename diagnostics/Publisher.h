#pragma once

namespace Diagnostics {

class LogItem;

// Receives every line of the trace. A publisher registers with the DiagnosticsManager while it
// lives; one that the manager owns is deleted by it when the manager shuts down, any other is
// only detached then.
class Publisher {
public:
    Publisher(const Publisher&) = delete;
    Publisher& operator=(const Publisher&) = delete;

    virtual void Publish(const LogItem& item) = 0;
    virtual ~Publisher();

protected:
    // Fails with ExceptionDiagnostic when every slot of the manager is taken.
    explicit Publisher(bool ownedByManager = false);

private:
    friend class DiagnosticsManager;

    bool ownedByManager;
    bool detached;
};

}
