#pragma once

#include "utilities/ExceptionGUI.h"

namespace Utilities {

// A user-interface element can't be created.
ORBEL_EXCEPTION_CLASS(ExceptionGUICreation, ExceptionGUI);

}
