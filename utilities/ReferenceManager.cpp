#include "utilities/ReferenceManager.h"

#include "diagnostics/String.h"

namespace Utilities {

Diagnostics::String ReferenceManager::GetValueString() const
{
    return Diagnostics::String();
}

ReferenceManager::~ReferenceManager() = default;

}
