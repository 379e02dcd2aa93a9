#include "utilities/DllLoader.h"

#include "utilities/DllLoader_PC.h"

namespace Utilities {

SmartPointer<DllLoader> DllLoader::Create(ComponentRegistry& registry)
{
    return SmartPointer<DllLoader>(new DllLoader_PC(registry));
}

DllLoader::DllLoader(ComponentRegistry& registry) : registry(registry) { }

}
