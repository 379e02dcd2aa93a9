#pragma once

#include "utilities/Exception.h"

namespace DeviceDriver {

// Talking to the instrument failed.
ORBEL_EXCEPTION_CLASS(ExceptionPaviloCommunication, Utilities::Exception);

}
