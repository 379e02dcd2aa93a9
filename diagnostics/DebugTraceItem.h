#pragma once

#include "diagnostics/TraceItem.h"

namespace Diagnostics {

// A free text of the developer inside a traced function. It is no call level of its own: its
// line stands one level below the function's call, and it reports no return.
class DebugTraceItem : public TraceItem {
public:
    DebugTraceItem(const char* package, const char* className, const char* function, const void* object = nullptr);
    ~DebugTraceItem() override;

    // Replaces the text.
    void AddParameter(const char* name) override;
    void LogCall() override;
};

}
