#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "utilities/platform/SystemMutex.h"

namespace Utilities {

// The named locks of this process: every holder of one lock file shares one SystemMutex, which
// goes with its last holder. Two file descriptors of one file would lock each other out even
// within a process, so there must never be two.
class SystemMutexTable {
public:
    static std::shared_ptr<SystemMutex> Open(const std::string& lockFilePath);

private:
    static std::mutex& Guard();
    static std::map<std::string, std::weak_ptr<SystemMutex>>& Entries();
};

}
