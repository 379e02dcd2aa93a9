#include "utilities/platform/LoadedModule.h"

#include <dlfcn.h>

namespace Utilities {

// RTLD_LOCAL keeps the module's symbols to itself.
std::unique_ptr<LoadedModule> LoadedModule::Open(const std::string& path)
{
    void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return handle == nullptr ? nullptr : std::unique_ptr<LoadedModule>(new LoadedModule(handle));
}

LoadedModule::LoadedModule(void* handle) : handle(handle) { }

LoadedModule::~LoadedModule()
{
    ::dlclose(handle);
}

void* LoadedModule::Symbol(const char* name) const
{
    return ::dlsym(handle, name);
}

}
