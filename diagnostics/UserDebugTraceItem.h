#pragma once

#include "diagnostics/DebugTraceItem.h"

namespace Diagnostics {

// Values that the developer reports inside a traced function, as a parameter list:
// "( name:value, other:value )".
class UserDebugTraceItem : public DebugTraceItem {
public:
    using DebugTraceItem::DebugTraceItem;

    void AddParameter(const char* name) override;
    void LogCall() override;
};

}
