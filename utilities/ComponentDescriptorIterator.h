#pragma once

#include <cstddef>
#include <vector>

#include "utilities/ComponentDescriptor.h"

namespace Utilities {

// Walks the descriptors that NamingService::GetComponentDescriptors found. It holds copies,
// so creators that come or go meanwhile don't disturb it.
class ComponentDescriptorIterator {
public:
    explicit ComponentDescriptorIterator(std::vector<ComponentDescriptor> found);

    bool IsValid() const;
    ComponentDescriptorIterator& operator++();
    const ComponentDescriptor& Current() const;
    std::size_t Count() const { return descriptors.size(); }

private:
    std::vector<ComponentDescriptor> descriptors;
    std::size_t position;
};

}
