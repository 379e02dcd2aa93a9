#pragma once

#include "diagnostics/FunctionName.h"
#include "diagnostics/String.h"

namespace Diagnostics {

// One line of the trace. The line holds the indentation of its depth, the kind word, the
// object's address when there is one, the function's name and the details, separated by " - ".
class LogItem {
public:
    LogItem(const FunctionName& function, const void* objectAddress, unsigned long depth);
    virtual ~LogItem();

    virtual String ToString() const;
    virtual void GetKindText(String& line) const = 0;
    virtual bool HasDetails() const = 0;
    virtual void AppendDetails(String& line) const = 0;
    virtual void AppendSeparator(String& line) const;

protected:
    // What one level of depth adds in front of the line.
    virtual const char* IndentationStep() const;
    void AppendIndentation(String& line) const;

private:
    FunctionName function;
    const void* objectAddress;
    unsigned long depth;
};

}
