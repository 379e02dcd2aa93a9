#include "utilities/Component.h"

#include "utilities/ComponentCreatorBase.h"

namespace Utilities {

Component::Component() : creator(nullptr) { }

Component::Component(const Component& other) = default;

Component& Component::operator=(const Component& other) = default;

Component::~Component()
{
    ComponentCreatorBase::ReleaseInstanceOf(creator);
    creator = nullptr;
}

bool Component::PrepareForUnload()
{
    return false;
}

}
