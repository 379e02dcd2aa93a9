#pragma once

#include <mutex>

#include "diagnostics/DiagnosticsFilter.h"

namespace Diagnostics {

class LogItem;
class Publisher;

// The centre of the tracer: the registered publishers, the filter, and the depth of the traced
// calls of each thread. Created at the first use, destroyed at process exit. Publishing is
// serialised, so that lines of several threads never mix.
class DiagnosticsManager {
public:
    static constexpr unsigned long publisherSlots = 5;

    static DiagnosticsManager& Instance();

    DiagnosticsManager(const DiagnosticsManager&) = delete;
    DiagnosticsManager& operator=(const DiagnosticsManager&) = delete;

    // Takes the first free slot; fails with ExceptionDiagnostic when there is none.
    void Register(Publisher& publisher);
    void Deregister(Publisher& publisher);

    // Gives the item to every publisher in slot order.
    void Publish(const LogItem& item);

    bool IsTraced(const char* package, const char* className);

    // The depth of the calling thread after one more level.
    long EnterLevel();
    void LeaveLevel();

private:
    DiagnosticsManager();
    ~DiagnosticsManager();

    std::recursive_mutex lock;
    Publisher* publishers[publisherSlots];
    DiagnosticsFilter filter;
};

}
