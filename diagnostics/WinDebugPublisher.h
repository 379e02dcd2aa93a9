#pragma once

#include "diagnostics/StringPublisher.h"
#include "utilities/File.h"
#include "utilities/SmartPointer.h"

namespace Diagnostics {

// The trace's own publisher: "DebugOutput.txt" in the working directory, begun anew by each
// process, one line per item, on disk at once. Made by the first trace item, owned by the
// DiagnosticsManager. A file that can't be written loses the trace, never the traced program.
class WinDebugPublisher : public StringPublisher {
public:
    static void EnsureExists();

    using StringPublisher::Publish;
    void Publish(const String& line) override;

private:
    WinDebugPublisher();
    ~WinDebugPublisher() override;

    static Utilities::SmartPointer<Utilities::File> OpenedOutput();

    Utilities::SmartPointer<Utilities::File> output;
};

}
