#pragma once

#include <concepts>
#include <cstdint>
#include <mutex>

#include "utilities/Component.h"
#include "utilities/ComponentCreatorBase.h"
#include "utilities/ComponentRegistry.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

// The creator of a plug-in module: it enters the registry that the loading module hands to the
// plug-in's entry point, rather than a NamingService of the plug-in's own, and leaves it again
// when the module is unloaded. Like a singleton creator it makes one T at the first request.
template<class T>
    requires std::derived_from<T, Component> && std::default_initializable<T>
class PluginCreator : public ComponentCreatorBase {
public:
    PluginCreator(ComponentRegistry& registry, const char* name, const char* version, const char* category)
        : registry(registry), descriptor(Describe(name, version, category, {}))
    {
        registry.AddCreator(this);
    }

    ~PluginCreator() override { registry.RemoveCreator(this); }

    ComponentDescriptor GetDescriptor() const override { return descriptor; }

    void Create(SmartPointer<Component>& result) override
    {
        std::lock_guard<std::mutex> guard(lock);
        if (instance.IsNull()) {
            instance = SmartPointer<T>(new T);
        }
        result = SmartPointer<Component>(instance);
    }

    uint32_t ReleaseInstance() override { return GetInstanceCount(); }

    // Without the creator's own reference.
    uint32_t GetInstanceCount() const override
    {
        std::lock_guard<std::mutex> guard(lock);
        const uint32_t holders = instance.UseCount();
        return holders == 0 ? 0 : holders - 1;
    }

    bool PrepareForUnload() override
    {
        std::lock_guard<std::mutex> guard(lock);
        return instance.IsNull() || instance->PrepareForUnload();
    }

private:
    ComponentRegistry& registry;
    const ComponentDescriptor descriptor;
    mutable std::mutex lock;
    SmartPointer<T> instance;
};

}
