#include "diagnostics/UserDebugTraceItem.h"

#include "diagnostics/UserDebugLogItem.h"

namespace Diagnostics {

void UserDebugTraceItem::AddParameter(const char* name)
{
    TraceItem::AddParameter(name);
}

void UserDebugTraceItem::LogCall()
{
    CloseParameterList();
    Publish(UserDebugLogItem(function, objectAddress, static_cast<unsigned long>(depth), text));
    text.Clear();
}

}
