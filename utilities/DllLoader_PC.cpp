#include "utilities/DllLoader_PC.h"

#include "utilities/ExceptionDllLoader.h"

namespace Utilities {

DllLoader_PC::DllLoader_PC(ComponentRegistry& registry) : DllLoader(registry) { }

bool DllLoader_PC::Load(SmartPointer<File> file)
{
    if (module != nullptr || file.IsNull()) {
        return false;
    }
    module = LoadedModule::Open(file->GetPath().ToStdString());
    if (module == nullptr) {
        return false;
    }
    auto* entry = reinterpret_cast<OrbelPluginEntry*>(module->Symbol(ORBEL_PLUGIN_ENTRY_NAME));
    if (entry == nullptr) {
        return false;
    }
    const std::uint32_t built = entry(pluginAbiVersion, &registry);
    if (built != pluginAbiVersion) {
        throw ExceptionDllLoader(file->GetName() + String(" is built for plug-in ABI version ") +
            String(static_cast<long>(built)) + String(", this module has version ") +
            String(static_cast<long>(pluginAbiVersion)));
    }
    return true;
}

}
