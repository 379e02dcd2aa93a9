#include "utilities/NamingService.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include "InstalledPaths.h"
#include "diagnostics/DebugTraceItem.h"
#include "utilities/Anything.h"
#include "utilities/ComponentCreatorBase.h"
#include "utilities/Directory.h"
#include "utilities/ExceptionDllLoader.h"
#include "utilities/ExceptionNamingService.h"
#include "utilities/platform/ProcessEnd.h"

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
    ProcessEnd::AtExit(DestroyInstance);
    instance.store(current, std::memory_order_release);
    return current;
}

void NamingService::DestroyInstance()
{
    delete instance.exchange(Destroyed(), std::memory_order_acq_rel);
}

NamingService::NamingService() = default;

// The named instances go first, then the creators are asked to prepare for unloading, and then
// the plug-in modules are unloaded while the creators they remove are still known.
NamingService::~NamingService()
{
    std::map<std::string, SmartPointer<Component>> released;
    {
        std::lock_guard<std::mutex> guard(lock);
        released.swap(instances);
    }
    released.clear();
    PrepareCreatorsForUnload();
    UnloadPlugins();
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
        creatorAdded = true;
    } else if (VersionOf(entered->second->GetDescriptor()) < VersionOf(descriptor)) {
        entered->second = creator;
    }
}

void NamingService::RemoveCreator(ComponentCreatorBase* creator)
{
    std::lock_guard<std::mutex> guard(lock);
    std::erase(registered, creator);
    const auto entered = std::find_if(
        creators.begin(), creators.end(), [creator](const auto& entry) { return entry.second == creator; });
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
    if (initialised.load(std::memory_order_acquire)) {
        return;
    }
    std::lock_guard<std::recursive_mutex> guard(scanning);
    if (scanStarted) {
        return;
    }
    scanStarted = true;
    ScanPlugins();
    initialised.store(true, std::memory_order_release);
}

// Plug-ins beside the host program come first, then those of the installation, whose folder the
// build names. Whatever goes wrong ends a scan quietly: without plug-ins the module works all the same.
void NamingService::ScanPlugins()
{
    try {
        LoadPlugins(*Directory::Create(Directory::DirectoryApplication));
    } catch (...) {
    }
    if (!Directory::Exists(String(ORBEL_INSTALLED_MODULE_DIR))) {
        return;
    }
    try {
        LoadPlugins(*Directory::Create(Directory::DirectoryGiven, String(ORBEL_INSTALLED_MODULE_DIR)));
    } catch (...) {
    }
}

void NamingService::LoadPlugins(const Directory& directory)
{
    const std::vector<SmartPointer<Directory>> pluginDirectories = directory.GetSubdirectories("plugins");
    if (pluginDirectories.empty()) {
        return;
    }
    for (const SmartPointer<File>& file : pluginDirectories.front()->GetFiles("*", "so")) {
        try {
            LoadPlugin(file);
        } catch (const ExceptionNamingService& failure) {
            // One module that can't be used leaves the others to load; the trace keeps why.
            Diagnostics::DebugTraceItem trace("Utilities", "NamingService", "LoadPlugins");
            trace.AddParameter(failure.Text()->CString());
            trace.LogCall();
        }
    }
}

// Only a new name counts, not what the loader answers: a module that loaded but brought nothing
// new is unloaded with its loader.
void NamingService::LoadPlugin(const SmartPointer<File>& file)
{
    const SmartPointer<DllLoader> loader = DllLoader::Create(*this);
    {
        std::lock_guard<std::mutex> guard(lock);
        creatorAdded = false;
    }
    try {
        loader->Load(file);
    } catch (const ExceptionDllLoader& failure) {
        throw ExceptionNamingService(String("NamingService: ") + *failure.Text());
    }
    std::lock_guard<std::mutex> guard(lock);
    if (!creatorAdded) {
        throw ExceptionNamingService("NamingService: " + file->GetName().ToStdString() + " is not a valid plugin DLL.");
    }
    loaders.push_back(loader);
}

// The modules go in the reverse order of their loading; their creators leave as they go.
void NamingService::UnloadPlugins()
{
    std::vector<SmartPointer<DllLoader>> loaded;
    {
        std::lock_guard<std::mutex> guard(lock);
        loaded.swap(loaders);
    }
    while (!loaded.empty()) {
        loaded.pop_back();
    }
}

ComponentCreatorBase* NamingService::FindCreator(const std::string& name)
{
    std::lock_guard<std::mutex> guard(lock);
    const auto entered = creators.find(name);
    return entered == creators.end() ? nullptr : entered->second;
}

// The first request of a full name makes the object; an object that another thread entered
// meanwhile is the one that every holder of the name shares.
void NamingService::ResolveNamedInstance(
    const std::string& prefix, const std::string& suffix, SmartPointer<Component>& result)
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
