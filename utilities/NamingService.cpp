#include "utilities/NamingService.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include "utilities/Anything.h"
#include "utilities/ComponentCreatorBase.h"
#include "utilities/ExceptionDllLoader.h"
#include "utilities/ExceptionNamingService.h"

namespace Utilities {

namespace {

// Null before the first use, the service, then all ones once it is destroyed.
std::atomic<NamingService*> instance{nullptr};
std::mutex instanceCreation;

NamingService* Destroyed()
{
    return reinterpret_cast<NamingService*>(~std::uintptr_t{0});
}

bool Matches(const ComponentDescriptor& descriptor, const std::string& key, const Anything& value)
{
    if (key.empty()) {
        return true;
    }
    const auto entry = descriptor.find(key);
    return entry != descriptor.end() && (!value.IsValid() || entry->second == value);
}

}

NamingService& NamingService::Instance()
{
    NamingService* current = instance.load(std::memory_order_acquire);
    if (current == nullptr) {
        current = CreateInstance();
    }
    if (current == Destroyed()) {
        throw ExceptionNamingService("Can't recreate instance of NamingService");
    }
    return *current;
}

NamingService* NamingService::CreateInstance()
{
    std::lock_guard<std::mutex> guard(instanceCreation);
    NamingService* current = instance.load(std::memory_order_acquire);
    if (current != nullptr) {
        return current;
    }
    current = new (std::nothrow) NamingService;
    if (current == nullptr) {
        throw ExceptionNamingService("Can't create instance of NamingService");
    }
    std::atexit(DestroyInstance);
    instance.store(current, std::memory_order_release);
    return current;
}

void NamingService::DestroyInstance()
{
    delete instance.exchange(Destroyed(), std::memory_order_acq_rel);
}

NamingService::NamingService() = default;

// The named instances go first, then the creators are asked to prepare for unloading.
NamingService::~NamingService()
{
    std::map<std::string, SmartPointer<Component>> released;
    {
        std::lock_guard<std::mutex> guard(lock);
        released.swap(instances);
    }
    released.clear();
    PrepareCreatorsForUnload();
}

void NamingService::Resolve(const std::string& name, SmartPointer<Component>& result)
{
    ScanPluginsOnce();
    if (ComponentCreatorBase* creator = FindCreator(name)) {
        try {
            creator->Create(result);
        } catch (const ExceptionDllLoader&) {
        }
        return;
    }
    const std::string::size_type colon = name.find(':');
    if (colon != std::string::npos) {
        ResolveNamedInstance(name.substr(0, colon), name.substr(colon + 1), result);
    }
}

void NamingService::AddCreator(ComponentCreatorBase* creator)
{
    const ComponentDescriptor descriptor = creator->GetDescriptor();
    const std::string name = NameOf(descriptor);
    std::lock_guard<std::mutex> guard(lock);
    if (std::find(registered.begin(), registered.end(), creator) == registered.end()) {
        registered.push_back(creator);
    }
    const auto entered = creators.find(name);
    if (entered == creators.end()) {
        creators.emplace(name, creator);
    } else if (VersionOf(entered->second->GetDescriptor()) < VersionOf(descriptor)) {
        entered->second = creator;
    }
}

void NamingService::RemoveCreator(ComponentCreatorBase* creator)
{
    std::lock_guard<std::mutex> guard(lock);
    std::erase(registered, creator);
    const auto entered = std::find_if(creators.begin(), creators.end(),
                                      [creator](const auto& entry) { return entry.second == creator; });
    if (entered != creators.end()) {
        const std::string name = entered->first;
        creators.erase(entered);
        ElectCreator(name);
    }
}

ComponentDescriptorIterator NamingService::GetComponentDescriptors(const std::string& key, const Anything& value)
{
    std::vector<ComponentDescriptor> found;
    std::lock_guard<std::mutex> guard(lock);
    for (const auto& entry : creators) {
        ComponentDescriptor descriptor = entry.second->GetDescriptor();
        if (Matches(descriptor, key, value)) {
            found.push_back(std::move(descriptor));
        }
    }
    return ComponentDescriptorIterator(std::move(found));
}

double NamingService::VersionOf(const ComponentDescriptor& descriptor)
{
    const auto version = descriptor.find("version");
    if (version == descriptor.end()) {
        return -1.0;
    }
    try {
        return version->second.AsString().Token(1, ' ').ToDouble();
    } catch (const Exception&) {
        return -1.0;
    }
}

std::string NamingService::NameOf(const ComponentDescriptor& descriptor)
{
    const auto name = descriptor.find("name");
    return name == descriptor.end() ? std::string() : name->second.AsString().ToStdString();
}

// Runs once per process, on the first request; a thread that comes meanwhile waits for it.
void NamingService::ScanPluginsOnce()
{
    std::call_once(initialised, [this] { ScanPlugins(); });
}

// Plug-in modules would register further creators here. This module loads none yet, so the
// scan finds nothing.
void NamingService::ScanPlugins() {}

ComponentCreatorBase* NamingService::FindCreator(const std::string& name)
{
    std::lock_guard<std::mutex> guard(lock);
    const auto entered = creators.find(name);
    return entered == creators.end() ? nullptr : entered->second;
}

// The first request of a full name makes the object; an object that another thread entered
// meanwhile is the one that every holder of the name shares.
void NamingService::ResolveNamedInstance(const std::string& prefix, const std::string& suffix,
                                         SmartPointer<Component>& result)
{
    const std::string key = prefix + ":" + suffix;
    {
        std::lock_guard<std::mutex> guard(lock);
        const auto known = instances.find(key);
        if (known != instances.end()) {
            result = known->second;
            return;
        }
    }
    SmartPointer<Component> created;
    Resolve(prefix, created);
    if (created.IsNull()) {
        return;
    }
    std::lock_guard<std::mutex> guard(lock);
    result = instances.emplace(key, created).first->second;
}

// The highest version among the creators left under name, of equal versions the first.
void NamingService::ElectCreator(const std::string& name)
{
    ComponentCreatorBase* best = nullptr;
    double bestVersion = 0.0;
    for (ComponentCreatorBase* candidate : registered) {
        const ComponentDescriptor descriptor = candidate->GetDescriptor();
        if (NameOf(descriptor) != name) {
            continue;
        }
        const double version = VersionOf(descriptor);
        if (best == nullptr || bestVersion < version) {
            best = candidate;
            bestVersion = version;
        }
    }
    if (best != nullptr) {
        creators.emplace(name, best);
    }
}

void NamingService::PrepareCreatorsForUnload()
{
    std::vector<ComponentCreatorBase*> toPrepare;
    {
        std::lock_guard<std::mutex> guard(lock);
        for (const auto& entry : creators) {
            toPrepare.push_back(entry.second);
        }
    }
    try {
        for (ComponentCreatorBase* creator : toPrepare) {
            creator->PrepareForUnload();
        }
    } catch (const ExceptionDllLoader&) {
    }
}

}
