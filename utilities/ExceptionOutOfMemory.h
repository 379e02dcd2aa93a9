#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// Memory ran out; kept so that catchers can name the case.
ORBEL_EXCEPTION_CLASS(ExceptionOutOfMemory, ExceptionResource);

}
