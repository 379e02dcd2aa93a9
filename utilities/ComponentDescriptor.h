#pragma once

#include <map>
#include <string>

#include "utilities/Anything.h"

namespace Utilities {

// What a component is: always "name", "version" ("$Revision: 1.4 $") and "category", each a
// String, and whatever further keys its creator adds.
using ComponentDescriptor = std::map<std::string, Anything>;

}
