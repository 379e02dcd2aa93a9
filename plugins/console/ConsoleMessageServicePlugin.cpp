#include "plugins/console/ConsoleMessageService.h"
#include "utilities/ComponentCreatorSingleton.h"
#include "utilities/DllLoader.h"

// Offers the console message service under "MessageService" for as long as the module stays
// loaded.
namespace {

void Register(Utilities::ComponentRegistry& registry)
{
    static Utilities::ComponentCreatorSingleton<Plugins::ConsoleMessageService> creator(
        registry, "MessageService", "$Revision: 1.0 $", "GUI");
}

}

ORBEL_PLUGIN_ENTRY(Register)
