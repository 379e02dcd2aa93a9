#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// A thread or mutex can't be had.
ORBEL_EXCEPTION_CLASS(ExceptionMultithreading, ExceptionResource);

}
