#pragma once

#include "utilities/ExceptionResource.h"

namespace HviManager {

// An instrument module failed.
ORBEL_EXCEPTION_CLASS(ExceptionHviModule, Utilities::ExceptionResource);

}
