#pragma once

#include "utilities/Exception.h"

namespace Utilities {

// The request can't be met on its own terms.
ORBEL_EXCEPTION_CLASS(ExceptionBusiness, Exception);

}
