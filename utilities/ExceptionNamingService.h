#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// A name can't be resolved, or the naming service can't be created.
ORBEL_EXCEPTION_CLASS(ExceptionNamingService, ExceptionResource);

}
