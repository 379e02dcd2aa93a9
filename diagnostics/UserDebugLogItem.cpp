#include "diagnostics/UserDebugLogItem.h"

namespace Diagnostics {

const char* UserDebugLogItem::IndentationStep() const
{
    return "| ";
}

}
