#pragma once

#include "diagnostics/DebugBreakLogItem.h"

namespace Diagnostics {

// A list of values that the developer reports inside a function, indented as the calls are.
class UserDebugLogItem : public DebugBreakLogItem {
public:
    using DebugBreakLogItem::DebugBreakLogItem;

protected:
    const char* IndentationStep() const override;
};

}
