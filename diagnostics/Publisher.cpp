#include "diagnostics/Publisher.h"

#include "diagnostics/DiagnosticsManager.h"

namespace Diagnostics {

Publisher::Publisher(bool ownedByManager) : ownedByManager(ownedByManager), detached(false)
{
    DiagnosticsManager::Instance().Register(*this);
}

Publisher::~Publisher()
{
    if (!detached) {
        DiagnosticsManager::Instance().Deregister(*this);
    }
}

}
