#pragma once

#include "utilities/ComponentRegistry.h"
#include "utilities/DllLoaderBase.h"
#include "utilities/SmartPointer.h"

// The one entry point that a plug-in module exports, with C linkage, under the name
// ORBEL_PLUGIN_ENTRY_NAME. It is called once, right after the module is loaded, with the registry
// of the loading module: the plug-in enters its creators there and removes them again when it
// is unloaded. A module that enters no new name is unloaded at once.
// A plug-in defines it as
//     ORBEL_PLUGIN_EXPORT void ORBEL_PLUGIN_ENTRY(Utilities::ComponentRegistry& registry) { ... }
#define ORBEL_PLUGIN_ENTRY OrbelPluginRegister
#define ORBEL_PLUGIN_ENTRY_NAME "OrbelPluginRegister"
#define ORBEL_PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

extern "C" {
using OrbelPluginEntry = void(Utilities::ComponentRegistry& registry);
}

namespace Utilities {

// Loads plug-in modules into the registry it is given.
class DllLoader : public DllLoaderBase {
public:
    // The loader of this platform.
    static SmartPointer<DllLoader> Create(ComponentRegistry& registry);

protected:
    explicit DllLoader(ComponentRegistry& registry);

    ComponentRegistry& registry;
};

}
