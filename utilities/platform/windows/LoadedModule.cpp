#include "utilities/platform/LoadedModule.h"

#include <windows.h>

#include "utilities/platform/windows/WideText.h"

namespace Utilities {

namespace {

HMODULE Module(void* handle)
{
    return static_cast<HMODULE>(handle);
}

}

std::unique_ptr<LoadedModule> LoadedModule::Open(const std::string& path)
{
    void* handle = ::LoadLibraryW(WideText::FromNarrow(path).c_str());
    return handle == nullptr ? nullptr : std::unique_ptr<LoadedModule>(new LoadedModule(handle));
}

LoadedModule::LoadedModule(void* handle) : handle(handle) { }

LoadedModule::~LoadedModule()
{
    ::FreeLibrary(Module(handle));
}

void* LoadedModule::Symbol(const char* name) const
{
    return reinterpret_cast<void*>(::GetProcAddress(Module(handle), name));
}

}
