#pragma once

#include "utilities/DllLoader.h"

namespace Utilities {

// A plug-in module as a shared object, loaded with its symbols kept to itself, so that its
// private copies of the foundation classes never stand in for this module's.
class DllLoader_PC : public DllLoader {
public:
    explicit DllLoader_PC(ComponentRegistry& registry);
    // Unloads the module; its creators leave the registry as it goes.
    ~DllLoader_PC() override;

    // Raises ExceptionDllLoader, naming both versions, for a module built for another plug-in ABI.
    bool Load(SmartPointer<File> file) override;

private:
    void* moduleHandle;
};

}
