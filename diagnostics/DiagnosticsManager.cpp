#include "diagnostics/DiagnosticsManager.h"

#include "diagnostics/ExceptionDiagnostic.h"
#include "diagnostics/Publisher.h"

namespace Diagnostics {

namespace {

// Each thread has its own nesting of calls.
thread_local long depth = 0;

}

DiagnosticsManager& DiagnosticsManager::Instance()
{
    static DiagnosticsManager manager;
    return manager;
}

DiagnosticsManager::DiagnosticsManager() : publishers{} { }

DiagnosticsManager::~DiagnosticsManager()
{
    for (Publisher*& publisher : publishers) {
        if (publisher == nullptr) {
            continue;
        }
        publisher->detached = true;
        if (publisher->ownedByManager) {
            delete publisher;
        }
        publisher = nullptr;
    }
}

void DiagnosticsManager::Register(Publisher& publisher)
{
    const std::lock_guard<std::recursive_mutex> guard(lock);
    for (Publisher*& slot : publishers) {
        if (slot == nullptr) {
            slot = &publisher;
            return;
        }
    }
    throw ExceptionDiagnostic("Assertion failed", "DiagnosticsManager::Register", "free publisher slot",
        "no more than 5 publishers can be registered");
}

void DiagnosticsManager::Deregister(Publisher& publisher)
{
    const std::lock_guard<std::recursive_mutex> guard(lock);
    for (Publisher*& slot : publishers) {
        if (slot == &publisher) {
            slot = nullptr;
        }
    }
}

void DiagnosticsManager::Publish(const LogItem& item)
{
    const std::lock_guard<std::recursive_mutex> guard(lock);
    for (Publisher* publisher : publishers) {
        if (publisher != nullptr) {
            publisher->Publish(item);
        }
    }
}

bool DiagnosticsManager::IsTraced(const char* package, const char* className)
{
    const std::lock_guard<std::recursive_mutex> guard(lock);
    return filter.IsTraced(package, className);
}

long DiagnosticsManager::EnterLevel()
{
    return ++depth;
}

void DiagnosticsManager::LeaveLevel()
{
    --depth;
}

}
