#include "utilities/platform/ProcessEnd.h"

#include <windows.h>

#include <cstdlib>
#include <mutex>
#include <vector>

namespace Utilities {

namespace {

using ShutdownQuery = BOOLEAN(WINAPI*)();

std::vector<void (*)()>& Pending()
{
    static std::vector<void (*)()> pending;
    return pending;
}

// True while the process ends, false when the module is unloaded from a living process.
bool ProcessEnding()
{
    const auto query = reinterpret_cast<ShutdownQuery>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
    return query != nullptr && query() != FALSE;
}

// Each work once, the last registered first, as atexit would run them.
void RunUnlessEnding()
{
    if (ProcessEnding()) {
        return;
    }
    std::vector<void (*)()>& pending = Pending();
    while (!pending.empty()) {
        void (*work)() = pending.back();
        pending.pop_back();
        work();
    }
}

}

void ProcessEnd::AtExit(void (*work)())
{
    static std::once_flag registered;
    std::call_once(registered, [] { std::atexit(RunUnlessEnding); });
    Pending().push_back(work);
}

}
