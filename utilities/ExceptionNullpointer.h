#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// A null SmartPointer was used, or a list node could not be had.
ORBEL_EXCEPTION_CLASS(ExceptionNullpointer, ExceptionResource);

}
