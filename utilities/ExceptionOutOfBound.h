#pragma once

#include "utilities/ExceptionResource.h"

namespace Utilities {

// An index, iterator, text conversion or value lies outside its range.
ORBEL_EXCEPTION_CLASS(ExceptionOutOfBound, ExceptionResource);

}
