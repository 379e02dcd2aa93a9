#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "utilities/Component.h"
#include "utilities/ComponentDescriptor.h"
#include "utilities/ComponentDescriptorIterator.h"
#include "utilities/ComponentRegistry.h"
#include "utilities/DllLoader.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

class Anything;
class ComponentCreatorBase;
class Directory;
class File;

// Finds components by text name. "name" gives whatever the creator of that name gives;
// "name:instance" gives one object per full text, made by the creator of "name" at the first
// request. The service is created by the first creator that registers and destroyed at process
// exit; it may be asked from several threads at once. The first request loads the plug-in
// modules beside the host program.
class NamingService : public ComponentRegistry {
public:
    static NamingService& Instance();

    NamingService(const NamingService&) = delete;
    NamingService& operator=(const NamingService&) = delete;

    // Leaves result as it was when nothing is found.
    void Resolve(const std::string& name, SmartPointer<Component>& result);

    // Of several creators of one name the highest version is used, of equal versions the first.
    void AddCreator(ComponentCreatorBase* creator) override;
    // The next best creator of the same name, if any is left, takes the removed one's place.
    void RemoveCreator(ComponentCreatorBase* creator) override;

    // Loads the shared objects of the "plugins" subdirectory of directory, in the order of their
    // names. A module that enters no new name is unloaded again; the others stay until the
    // service goes. The first Resolve does this for the host program's directory.
    void LoadPlugins(const Directory& directory);

    // The descriptors that have key with a value equal to value; an empty key matches every
    // descriptor, an empty (invalid) value every descriptor with the key.
    ComponentDescriptorIterator GetComponentDescriptors(const std::string& key, const Anything& value);

    // The number of a "$Revision: 1.4 $" keyword as a double; -1.0 when missing or unreadable.
    static double VersionOf(const ComponentDescriptor& descriptor);

private:
    NamingService();
    ~NamingService() override;

    static NamingService* CreateInstance();
    static void DestroyInstance();
    static std::string NameOf(const ComponentDescriptor& descriptor);

    void ScanPluginsOnce();
    void ScanPlugins();
    void LoadPlugin(const SmartPointer<File>& file);
    void UnloadPlugins();
    ComponentCreatorBase* FindCreator(const std::string& name);
    void ResolveNamedInstance(const std::string& prefix, const std::string& suffix, SmartPointer<Component>& result);
    void ElectCreator(const std::string& name);
    void PrepareCreatorsForUnload();

    std::mutex lock;
    // Set when a creator is entered under a new name; tells whether a plug-in brought anything.
    bool creatorAdded = false;
    // The plug-in scan runs once per process. A Resolve from inside the scan, as a failure text
    // that asks for its translation, goes on without it; other threads wait for the scan.
    std::recursive_mutex scanning;
    bool scanStarted = false;
    std::atomic<bool> initialised{false};
    std::map<std::string, SmartPointer<Component>> instances;
    std::map<std::string, ComponentCreatorBase*> creators;
    // Every registered creator in order of registration, also those that lost to a higher
    // version, so that one can step in when the winner is removed.
    std::vector<ComponentCreatorBase*> registered;
    // One per plug-in module that entered a new name; it keeps the module loaded.
    std::vector<SmartPointer<DllLoader>> loaders;
};

}
