#include "diagnostics/StringPublisher.h"

#include "diagnostics/LogItem.h"

namespace Diagnostics {

void StringPublisher::Publish(const LogItem& item)
{
    Publish(item.ToString());
}

}
