#pragma once

#include "diagnostics/LogItem.h"

namespace Diagnostics {

// A free text of the developer inside a function: the indentation and the text, nothing else.
class DebugBreakLogItem : public LogItem {
public:
    DebugBreakLogItem(const FunctionName& function, const void* objectAddress, unsigned long depth, const String& text);

    String ToString() const override;
    void GetKindText(String& line) const override;
    bool HasDetails() const override;
    void AppendDetails(String& line) const override;

protected:
    const char* IndentationStep() const override;

private:
    String text;
};

}
