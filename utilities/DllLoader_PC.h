#pragma once

#include <memory>

#include "utilities/DllLoader.h"
#include "utilities/platform/LoadedModule.h"

namespace Utilities {

// A plug-in module, loaded with its symbols kept to itself, so that its private copies of the
// foundation classes never stand in for this module's.
class DllLoader_PC : public DllLoader {
public:
    explicit DllLoader_PC(ComponentRegistry& registry);

    // Raises ExceptionDllLoader, naming both versions, for a module built for another plug-in ABI.
    bool Load(SmartPointer<File> file) override;

private:
    // Unloaded with the loader; its creators leave the registry as it goes.
    std::unique_ptr<LoadedModule> module;
};

}
