#pragma once

#include <string>

#include "utilities/Component.h"
#include "utilities/NamingService.h"
#include "utilities/SmartPointer.h"

namespace Utilities {

// The component of that name as a T; null when the name is unknown or the component is no T.
template<class T>
SmartPointer<T> ResolveAs(const std::string& name)
{
    SmartPointer<Component> component;
    NamingService::Instance().Resolve(name, component);
    return SmartPointerCast<T>(component);
}

}
