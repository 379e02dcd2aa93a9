#pragma once

#include "utilities/Exception.h"

namespace Utilities {

// Something the program needs is missing or used wrongly.
ORBEL_EXCEPTION_CLASS(ExceptionResource, Exception);

}
