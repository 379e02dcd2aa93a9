#include "diagnostics/ReturnLogItem.h"

namespace Diagnostics {

ReturnLogItem::ReturnLogItem(
    const FunctionName& function, const void* objectAddress, unsigned long depth, const String& returned)
    : LogItem(function, objectAddress, depth), returned(returned)
{
}

void ReturnLogItem::GetKindText(String& line) const
{
    line += "RETURN";
}

bool ReturnLogItem::HasDetails() const
{
    return !returned.IsEmpty();
}

void ReturnLogItem::AppendDetails(String& line) const
{
    line += "{";
    line += returned;
    line += "}";
}

}
