#include "diagnostics/CallLogItem.h"

namespace Diagnostics {

CallLogItem::CallLogItem(
    const FunctionName& function, const void* objectAddress, unsigned long depth, const String& parameters)
    : LogItem(function, objectAddress, depth), parameters(parameters)
{
}

void CallLogItem::GetKindText(String& line) const
{
    line += "CALL";
}

bool CallLogItem::HasDetails() const
{
    return !parameters.IsEmpty();
}

void CallLogItem::AppendDetails(String& line) const
{
    line += parameters;
}

}
