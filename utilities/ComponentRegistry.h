#pragma once

namespace Utilities {

class ComponentCreatorBase;

// Where creators enter and leave. A plug-in module is handed the registry of the module that
// loads it, so that its creators join the same NamingService; the calls are virtual because a
// plug-in can't link to the functions of this module.
class ComponentRegistry {
public:
    virtual ~ComponentRegistry();

    virtual void AddCreator(ComponentCreatorBase* creator) = 0;
    virtual void RemoveCreator(ComponentCreatorBase* creator) = 0;
};

}
