#pragma once

#include <cstdint>

#include "utilities/ComponentDescriptor.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

class Component;

// Makes or finds the components of one class. A creator registers itself with the
// NamingService when it is constructed (a static object in its component's source file) and
// removes itself when it is destroyed.
class ComponentCreatorBase {
public:
    ComponentCreatorBase() = default;
    ComponentCreatorBase(const ComponentCreatorBase&) = delete;
    ComponentCreatorBase& operator=(const ComponentCreatorBase&) = delete;
    virtual ~ComponentCreatorBase();

    virtual ComponentDescriptor GetDescriptor() const = 0;
    virtual void Create(SmartPointer<Component>& result) = 0;
    // A component of this creator went away; gives the instances left.
    virtual uint32_t ReleaseInstance() = 0;
    virtual uint32_t GetInstanceCount() const = 0;
    virtual bool PrepareForUnload() = 0;

    // Called by a component that goes away. Components can outlive their creator at process
    // exit (named instances, static holders), so only a creator that is still registered
    // hears of it.
    static void ReleaseInstanceOf(ComponentCreatorBase* creator);

protected:
    static ComponentDescriptor Describe(
        const char* name, const char* version, const char* category, ComponentDescriptor furtherKeys);

    // Called by the most derived constructor and destructor, where GetDescriptor() is whole.
    // Failures are ignored: at process exit the NamingService may be gone already.
    void Register();
    void Unregister();

    // Makes this creator the one that the component tells when it goes away.
    void Adopt(Component& component);
};

}
