#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "utilities/Component.h"
#include "utilities/ComponentDescriptor.h"
#include "utilities/ComponentDescriptorIterator.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

class Anything;
class ComponentCreatorBase;

// Finds components by text name. "name" gives whatever the creator of that name gives;
// "name:instance" gives one object per full text, made by the creator of "name" at the first
// request. The service is created by the first creator that registers and destroyed at process
// exit; it may be asked from several threads at once.
class NamingService {
public:
    static NamingService& Instance();

    NamingService(const NamingService&) = delete;
    NamingService& operator=(const NamingService&) = delete;

    // Leaves result as it was when nothing is found.
    void Resolve(const std::string& name, SmartPointer<Component>& result);

    // Of several creators of one name the highest version is used, of equal versions the first.
    void AddCreator(ComponentCreatorBase* creator);
    // The next best creator of the same name, if any is left, takes the removed one's place.
    void RemoveCreator(ComponentCreatorBase* creator);

    // The descriptors that have key with a value equal to value; an empty key matches every
    // descriptor, an empty (invalid) value every descriptor with the key.
    ComponentDescriptorIterator GetComponentDescriptors(const std::string& key, const Anything& value);

    // The number of a "$Revision: 1.4 $" keyword as a double; -1.0 when missing or unreadable.
    static double VersionOf(const ComponentDescriptor& descriptor);

private:
    NamingService();
    ~NamingService();

    static NamingService* CreateInstance();
    static void DestroyInstance();
    static std::string NameOf(const ComponentDescriptor& descriptor);

    void ScanPluginsOnce();
    void ScanPlugins();
    ComponentCreatorBase* FindCreator(const std::string& name);
    void ResolveNamedInstance(const std::string& prefix, const std::string& suffix,
                              SmartPointer<Component>& result);
    void ElectCreator(const std::string& name);
    void PrepareCreatorsForUnload();

    std::mutex lock;
    // Set by the plug-in scan, which runs once per process.
    std::once_flag initialised;
    std::map<std::string, SmartPointer<Component>> instances;
    std::map<std::string, ComponentCreatorBase*> creators;
    // Every registered creator in order of registration, also those that lost to a higher
    // version, so that one can step in when the winner is removed.
    std::vector<ComponentCreatorBase*> registered;
};

}
