#pragma once

#include <memory>
#include <string>

namespace Utilities {

// A shared object or DLL in the process for as long as this lives.
class LoadedModule {
public:
    // Null when the module can't be loaded.
    static std::unique_ptr<LoadedModule> Open(const std::string& path);
    ~LoadedModule();
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    // Null when the module exports no such name.
    void* Symbol(const char* name) const;

private:
    explicit LoadedModule(void* handle);

    void* handle;
};

}
