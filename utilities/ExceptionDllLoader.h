#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// A plug-in module can't be loaded.
ORBEL_EXCEPTION_CLASS(ExceptionDllLoader, ExceptionResource);

}
