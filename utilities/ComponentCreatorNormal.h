#pragma once

#include <atomic>
#include <concepts>
#include <cstdint>
#include <utility>

#include "utilities/Component.h"
#include "utilities/ComponentCreatorBase.h"

namespace Utilities {

// Makes a new T at every request and counts the instances that are out.
template<class T>
requires std::derived_from<T, Component> && std::default_initializable<T>
class ComponentCreatorNormal : public ComponentCreatorBase {
public:
    ComponentCreatorNormal(
        const char* name, const char* version, const char* category, ComponentDescriptor furtherKeys = {})
        : descriptor(Describe(name, version, category, std::move(furtherKeys))), instanceCount(0)
    {
        Register();
    }

    ~ComponentCreatorNormal() override { Unregister(); }

    ComponentDescriptor GetDescriptor() const override { return descriptor; }

    void Create(SmartPointer<Component>& result) override
    {
        T* component = new T;
        SmartPointer<Component> created(component);
        Adopt(*component);
        instanceCount.fetch_add(1, std::memory_order_relaxed);
        result = created;
    }

    uint32_t ReleaseInstance() override { return instanceCount.fetch_sub(1, std::memory_order_relaxed) - 1; }

    uint32_t GetInstanceCount() const override { return instanceCount.load(std::memory_order_relaxed); }

    bool PrepareForUnload() override { return true; }

private:
    const ComponentDescriptor descriptor;
    std::atomic<uint32_t> instanceCount;
};

}
