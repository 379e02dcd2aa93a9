#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// The component factory can't be created.
ORBEL_EXCEPTION_CLASS(ExceptionComponentFactory, ExceptionResource);

}
