#include "utilities/platform/DllLoader_PC.h"

#include <dlfcn.h>

#include "utilities/ExceptionDllLoader.h"

namespace Utilities {

DllLoader_PC::DllLoader_PC(ComponentRegistry& registry) : DllLoader(registry), moduleHandle(nullptr) { }

DllLoader_PC::~DllLoader_PC()
{
    if (moduleHandle != nullptr) {
        ::dlclose(moduleHandle);
    }
}

bool DllLoader_PC::Load(SmartPointer<File> file)
{
    if (moduleHandle != nullptr || file.IsNull()) {
        return false;
    }
    moduleHandle = ::dlopen(file->GetPath().ToStdString().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (moduleHandle == nullptr) {
        return false;
    }
    auto* entry = reinterpret_cast<OrbelPluginEntry*>(::dlsym(moduleHandle, ORBEL_PLUGIN_ENTRY_NAME));
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
