#pragma once

#include "utilities/ExceptionBusiness.h"

namespace Utilities {

// An Anything holds another type than the one asked for.
ORBEL_EXCEPTION_CLASS(ExceptionWrongType, ExceptionBusiness);

}
