#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// A file, directory or language resource can't be had.
ORBEL_EXCEPTION_CLASS(ExceptionResourceNotAvailable, ExceptionResource);

}
