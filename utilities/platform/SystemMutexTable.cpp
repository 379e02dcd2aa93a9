#include "utilities/platform/SystemMutexTable.h"

namespace Utilities {

std::shared_ptr<SystemMutex> SystemMutexTable::Open(const std::string& lockFilePath)
{
    std::lock_guard<std::mutex> held(Guard());
    auto& entries = Entries();
    std::erase_if(entries, [](const auto& entry) { return entry.second.expired(); });
    if (auto existing = entries[lockFilePath].lock()) {
        return existing;
    }
    auto made = std::make_shared<SystemMutex>(std::make_unique<FileLock>(lockFilePath));
    entries[lockFilePath] = made;
    return made;
}

// Both live until the end of the process, so that a Mutex destroyed during exit still finds them.
std::mutex& SystemMutexTable::Guard()
{
    static auto* guard = new std::mutex;
    return *guard;
}

std::map<std::string, std::weak_ptr<SystemMutex>>& SystemMutexTable::Entries()
{
    static auto* entries = new std::map<std::string, std::weak_ptr<SystemMutex>>;
    return *entries;
}

}
