#include "utilities/ComponentCreatorBase.h"

#include <mutex>
#include <set>
#include <utility>

#include "utilities/Component.h"
#include "utilities/NamingService.h"

namespace Utilities {

namespace {

// The creators that are registered now. It lives on the heap and is never destroyed, so that
// components that die late in process exit still find it.
struct LiveCreators {
    std::mutex lock;
    std::set<const ComponentCreatorBase*> creators;
};

LiveCreators& Live()
{
    static LiveCreators* const live = new LiveCreators;
    return *live;
}

}

ComponentCreatorBase::~ComponentCreatorBase() = default;

void ComponentCreatorBase::ReleaseInstanceOf(ComponentCreatorBase* creator)
{
    if (creator == nullptr) {
        return;
    }
    LiveCreators& live = Live();
    std::lock_guard<std::mutex> guard(live.lock);
    if (live.creators.contains(creator)) {
        creator->ReleaseInstance();
    }
}

ComponentDescriptor ComponentCreatorBase::Describe(
    const char* name, const char* version, const char* category, ComponentDescriptor furtherKeys)
{
    furtherKeys.insert_or_assign("name", Anything(name));
    furtherKeys.insert_or_assign("version", Anything(version));
    furtherKeys.insert_or_assign("category", Anything(category));
    return furtherKeys;
}

void ComponentCreatorBase::Register()
{
    {
        LiveCreators& live = Live();
        std::lock_guard<std::mutex> guard(live.lock);
        live.creators.insert(this);
    }
    try {
        NamingService::Instance().AddCreator(this);
    } catch (...) {
        // Runs at static initialisation, where nothing may raise: a creator the naming service
        // missed is only unknown to it by name, and the live set above still holds it.
    }
}

void ComponentCreatorBase::Unregister()
{
    try {
        NamingService::Instance().RemoveCreator(this);
    } catch (...) {
        // Runs at static destruction, where nothing may raise; the naming service may be gone.
    }
    LiveCreators& live = Live();
    std::lock_guard<std::mutex> guard(live.lock);
    live.creators.erase(this);
}

void ComponentCreatorBase::Adopt(Component& component)
{
    component.creator = this;
}

}
