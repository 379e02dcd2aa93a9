#include "diagnostics/LogItem.h"

namespace Diagnostics {

LogItem::LogItem(const FunctionName& function, const void* objectAddress, unsigned long depth)
    : function(function), objectAddress(objectAddress), depth(depth)
{
}

LogItem::~LogItem() = default;

String LogItem::ToString() const
{
    String line;
    AppendIndentation(line);
    GetKindText(line);
    AppendSeparator(line);
    if (objectAddress != nullptr) {
        line += String(objectAddress);
        AppendSeparator(line);
    }
    line += function.Name();
    if (HasDetails()) {
        AppendSeparator(line);
        AppendDetails(line);
    }
    return line;
}

void LogItem::AppendSeparator(String& line) const
{
    line += " - ";
}

const char* LogItem::IndentationStep() const
{
    return "| ";
}

void LogItem::AppendIndentation(String& line) const
{
    for (unsigned long level = 1; level < depth; ++level) {
        line += IndentationStep();
    }
}

}
