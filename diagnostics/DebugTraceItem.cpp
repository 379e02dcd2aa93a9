#include "diagnostics/DebugTraceItem.h"

#include "diagnostics/DebugBreakLogItem.h"
#include "diagnostics/DiagnosticsManager.h"

namespace Diagnostics {

DebugTraceItem::DebugTraceItem(const char* package, const char* className, const char* function, const void* object)
    : TraceItem(package, className, function, object)
{
    manager.LeaveLevel();
}

// The base gives back a level that this item never kept.
DebugTraceItem::~DebugTraceItem()
{
    reportReturn = false;
    manager.EnterLevel();
}

void DebugTraceItem::AddParameter(const char* name)
{
    text = String(name);
}

void DebugTraceItem::LogCall()
{
    Publish(DebugBreakLogItem(function, objectAddress, static_cast<unsigned long>(depth), text));
    text.Clear();
}

}
