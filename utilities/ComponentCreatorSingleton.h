#pragma once

#include <concepts>
#include <cstdint>
#include <mutex>
#include <utility>

#include "utilities/Component.h"
#include "utilities/ComponentCreatorBase.h"
#include "utilities/ComponentRegistry.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

// Makes one T at the first request and hands out that object ever after. The component isn't
// adopted: a singleton doesn't tell its creator when it goes; its count is read from the
// SmartPointer instead.
// A plug-in module makes its creators with the registry that its entry point is handed, so that
// they join the loading module's NamingService rather than the plug-in's own copy of it, and leave
// it again when the module is unloaded.
template<class T>
requires std::derived_from<T, Component> && std::default_initializable<T>
class ComponentCreatorSingleton : public ComponentCreatorBase {
public:
    ComponentCreatorSingleton(
        const char* name, const char* version, const char* category, ComponentDescriptor furtherKeys = {})
        : descriptor(Describe(name, version, category, std::move(furtherKeys)))
    {
        Register();
    }

    ComponentCreatorSingleton(ComponentRegistry& registry, const char* name, const char* version, const char* category)
        : descriptor(Describe(name, version, category, {})), registry(&registry)
    {
        registry.AddCreator(this);
    }

    ~ComponentCreatorSingleton() override
    {
        if (registry != nullptr) {
            registry->RemoveCreator(this);
        } else {
            Unregister();
        }
    }

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
    const ComponentDescriptor descriptor;
    ComponentRegistry* const registry = nullptr;
    mutable std::mutex lock;
    SmartPointer<T> instance;
};

}
