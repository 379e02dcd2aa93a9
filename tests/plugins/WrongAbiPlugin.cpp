#include "plugins/console/ConsoleMessageService.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/DllLoader.h"

namespace {

void Register(Utilities::ComponentRegistry& registry)
{
    static Utilities::ComponentCreatorSingleton<Plugins::ConsoleMessageService> creator(
        registry, "WrongAbiMessageService", "$Revision: 1.0 $", "GUI");
}

}

// A plug-in as the header of plug-in ABI version 999 builds it.
ORBEL_PLUGIN_ENTRY_FOR_VERSION(Register, 999)
