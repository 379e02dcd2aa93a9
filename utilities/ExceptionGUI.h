#pragma once

#include "utilities/Exception.h"

namespace Utilities {

// The family of user-interface failures.
ORBEL_EXCEPTION_CLASS(ExceptionGUI, Exception);

}
