#include "plugins/console/ConsoleMessageService.h"
#include "utilities/DllLoader.h"
#include "utilities/PluginCreator.h"

// Offers the console message service under "MessageService" for as long as the module stays
// loaded.
ORBEL_PLUGIN_EXPORT void ORBEL_PLUGIN_ENTRY(Utilities::ComponentRegistry& registry)
{
    static Utilities::PluginCreator<Plugins::ConsoleMessageService> creator(registry, "MessageService",
                                                                           "$Revision: 1.0 $", "GUI");
}
