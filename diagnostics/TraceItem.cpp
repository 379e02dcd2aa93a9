#include "diagnostics/TraceItem.h"

#include <exception>

#include "diagnostics/CallLogItem.h"
#include "diagnostics/DiagnosticsManager.h"
#include "diagnostics/ReturnLogItem.h"
#include "diagnostics/WinDebugPublisher.h"

namespace Diagnostics {

namespace {

constexpr char missingReturn[] = "********** Developer Exception : Missing return statement! **********";

}

TraceItem::TraceItem(const char* package, const char* className, const char* function, const void* object)
    : manager(ManagerWithItsOutput()), function(package, className, function), objectAddress(object),
      traced(manager.IsTraced(package, className)), depth(manager.EnterLevel()), reportReturn(true), returnSeen(true),
      exceptionsAtEntry(std::uncaught_exceptions())
{
}

DiagnosticsManager& TraceItem::ManagerWithItsOutput()
{
    WinDebugPublisher::EnsureExists();
    return DiagnosticsManager::Instance();
}

TraceItem::~TraceItem()
{
    try {
        if (reportReturn) {
            LogReturn();
        }
        if (!returnSeen && std::uncaught_exceptions() == exceptionsAtEntry) {
            ReportMissingReturn();
        }
    } catch (...) {
        // A trace must never end the traced program: a failing publisher isn't heard here.
    }
    manager.LeaveLevel();
}

void TraceItem::AddParameter(const char* name)
{
    text += text.IsEmpty() ? "( " : ", ";
    text += name;
    text += ":";
}

void TraceItem::LogCall()
{
    CloseParameterList();
    Publish(CallLogItem(function, objectAddress, static_cast<unsigned long>(depth), text));
    text.Clear();
}

String& TraceItem::GetText()
{
    return text;
}

void TraceItem::LogReturn()
{
    Publish(ReturnLogItem(function, objectAddress, static_cast<unsigned long>(depth), text));
    text.Clear();
}

void TraceItem::ExpectReturnValue()
{
    returnSeen = false;
}

void TraceItem::ReportReturnValue()
{
    if (!reportReturn) {
        return;
    }
    returnSeen = true;
    reportReturn = false;
    LogReturn();
}

void TraceItem::CloseParameterList()
{
    if (text.IsEmpty()) {
        text += "()";
    } else {
        text += " )";
    }
}

void TraceItem::Publish(const LogItem& item)
{
    if (traced) {
        manager.Publish(item);
    }
}

void TraceItem::ReportMissingReturn()
{
    String message("\n");
    for (long level = 1; level < depth; ++level) {
        message += "| ";
    }
    message += missingReturn;
    text.Clear();
    AddParameter(message.CString());
    LogCall();
}

}
