#include "control/ControlModule.h"

#include <atomic>

namespace Control {

namespace {

HINSTANCE moduleInstance = nullptr;
std::atomic<long> objects{0};
std::atomic<long> locks{0};

}

void ControlModule::SetInstance(HINSTANCE instance)
{
    moduleInstance = instance;
}

HINSTANCE ControlModule::Instance()
{
    return moduleInstance;
}

std::wstring ControlModule::Path()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(moduleInstance, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

void ControlModule::ObjectMade()
{
    ++objects;
}

void ControlModule::ObjectGone()
{
    --objects;
}

void ControlModule::Lock(bool lock)
{
    if (lock) {
        ++locks;
    } else {
        --locks;
    }
}

bool ControlModule::CanUnload()
{
    return objects == 0 && locks == 0;
}

}
