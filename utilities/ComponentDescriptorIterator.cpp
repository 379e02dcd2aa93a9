#include "utilities/ComponentDescriptorIterator.h"

#include <utility>

#include "utilities/ExceptionOutOfBound.h"

namespace Utilities {

ComponentDescriptorIterator::ComponentDescriptorIterator(std::vector<ComponentDescriptor> found)
    : descriptors(std::move(found)), position(0)
{
}

bool ComponentDescriptorIterator::IsValid() const
{
    return position < descriptors.size();
}

ComponentDescriptorIterator& ComponentDescriptorIterator::operator++()
{
    if (IsValid()) {
        ++position;
    }
    return *this;
}

const ComponentDescriptor& ComponentDescriptorIterator::Current() const
{
    if (!IsValid()) {
        throw ExceptionOutOfBound("no more ComponentDescriptors available.");
    }
    return descriptors[position];
}

}
