#pragma once

#include <cstdint>

#include "utilities/ComponentRegistry.h"
#include "utilities/DllLoaderBase.h"
#include "utilities/SmartPointer.h"

// The one entry point that a plug-in module exports, with C linkage, under the name
// ORBEL_PLUGIN_ENTRY_NAME. It is called once, right after the module is loaded, with the plug-in
// ABI version of the loading module and its registry. A plug-in built for that version enters its
// creators there, and removes them again when it is unloaded; either way it answers the version
// it was built for, and the loader refuses a module whose answer differs. The signature of the
// entry never changes, so that the handshake itself is safe across versions. A module that enters
// no new name is unloaded at once.
// A plug-in defines its registration as a function of the registry and names it once:
//     void Register(Utilities::ComponentRegistry& registry) { ... }
//     ORBEL_PLUGIN_ENTRY(Register)
#define ORBEL_PLUGIN_ENTRY_NAME "OrbelPluginRegister"
#define ORBEL_PLUGIN_ENTRY(registerCreators)                                                                           \
    ORBEL_PLUGIN_ENTRY_FOR_VERSION(registerCreators, Utilities::pluginAbiVersion)
// The entry as the header of the given plug-in ABI version makes it.
#define ORBEL_PLUGIN_ENTRY_FOR_VERSION(registerCreators, builtFor)                                                     \
    extern "C" __attribute__((visibility("default"))) std::uint32_t OrbelPluginRegister(                               \
        std::uint32_t hostAbiVersion, void* registry)                                                                  \
    {                                                                                                                  \
        if (hostAbiVersion == (builtFor)) {                                                                            \
            registerCreators(*static_cast<Utilities::ComponentRegistry*>(registry));                                   \
        }                                                                                                              \
        return (builtFor);                                                                                             \
    }

extern "C" {
using OrbelPluginEntry = std::uint32_t(std::uint32_t hostAbiVersion, void* registry);
}

namespace Utilities {

// Raised with each change of what crosses the boundary of a plug-in: the registry, the creators
// and the classes of the components.
constexpr std::uint32_t pluginAbiVersion = 1;

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
