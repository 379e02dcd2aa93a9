#include "diagnostics/DebugBreakLogItem.h"

namespace Diagnostics {

DebugBreakLogItem::DebugBreakLogItem(
    const FunctionName& function, const void* objectAddress, unsigned long depth, const String& text)
    : LogItem(function, objectAddress, depth), text(text)
{
}

String DebugBreakLogItem::ToString() const
{
    String line;
    AppendIndentation(line);
    if (HasDetails()) {
        AppendDetails(line);
    }
    return line;
}

void DebugBreakLogItem::GetKindText(String&) const { }

bool DebugBreakLogItem::HasDetails() const
{
    return !text.IsEmpty();
}

void DebugBreakLogItem::AppendDetails(String& line) const
{
    line += text;
}

const char* DebugBreakLogItem::IndentationStep() const
{
    return "  ";
}

}
