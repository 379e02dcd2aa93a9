#pragma once

#include "diagnostics/FunctionName.h"
#include "diagnostics/String.h"

namespace Diagnostics {

class DiagnosticsManager;
class LogItem;

// Put on the stack of a function that is to be traced. It reports the call with its parameters,
// the return with its value, and a function with a result that was left without reporting it.
// A function hidden by the filter files is counted as a level but reports nothing.
//
//     TraceItem trace("Utilities", "List", "Append", this);
//     trace.AddParameter("value");
//     trace.GetText() += value;
//     trace.LogCall();
class TraceItem {
public:
    TraceItem(const char* package, const char* className, const char* function, const void* object = nullptr);
    TraceItem(const TraceItem&) = delete;
    TraceItem& operator=(const TraceItem&) = delete;
    virtual ~TraceItem();

    // Opens the list with "( " or goes on with ", ", then the name and ":"; the value follows
    // through GetText().
    virtual void AddParameter(const char* name);
    virtual void LogCall();
    virtual String& GetText();
    virtual void LogReturn();

    // The function has a result: leaving it without ReportReturnValue() is reported, unless
    // it is left by an exception.
    void ExpectReturnValue();
    // Reports the value appended through GetText() as the return, once.
    void ReportReturnValue();

protected:
    void CloseParameterList();
    void Publish(const LogItem& item);

    DiagnosticsManager& manager;
    const FunctionName function;
    const void* const objectAddress;
    String text;
    // Asked before the level is entered, so that nothing can fail once it is.
    const bool traced;
    const long depth;
    bool reportReturn;
    bool returnSeen;

private:
    static DiagnosticsManager& ManagerWithItsOutput();
    void ReportMissingReturn();

    const int exceptionsAtEntry;
};

}
