#pragma once

#include "utilities/ComponentBase.h"

namespace Utilities {

class ComponentCreatorBase;

// An object found by name through the NamingService. A component made by a counting creator
// remembers it and tells it when it goes away, so that the creator knows its instances.
class Component : public ComponentBase {
public:
    Component();
    Component(const Component& other);
    Component& operator=(const Component& other);
    ~Component() override;

    // A component that can be unloaded gives true once it has freed what it must.
    virtual bool PrepareForUnload();

private:
    friend class ComponentCreatorBase;

    ComponentCreatorBase* creator;
};

}
