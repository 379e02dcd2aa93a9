#include "utilities/platform/DllLoader_PC.h"

#include <windows.h>

#include "utilities/ExceptionDllLoader.h"
#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

HMODULE Module(void* handle)
{
    return static_cast<HMODULE>(handle);
}

}

DllLoader_PC::DllLoader_PC(ComponentRegistry& registry) : DllLoader(registry), moduleHandle(nullptr) { }

DllLoader_PC::~DllLoader_PC()
{
    if (moduleHandle != nullptr) {
        ::FreeLibrary(Module(moduleHandle));
    }
}

bool DllLoader_PC::Load(SmartPointer<File> file)
{
    if (moduleHandle != nullptr || file.IsNull()) {
        return false;
    }
    moduleHandle = ::LoadLibraryW(WideText::FromNarrow(file->GetPath().ToStdString()).c_str());
    if (moduleHandle == nullptr) {
        return false;
    }
    auto* entry = reinterpret_cast<OrbelPluginEntry*>(
        reinterpret_cast<void*>(::GetProcAddress(Module(moduleHandle), ORBEL_PLUGIN_ENTRY_NAME)));
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
