#pragma once

#include "utilities/ExceptionBusiness.h"

namespace CMetry {

// Bad colorimetric input, mostly a value outside an enumeration.
ORBEL_EXCEPTION_CLASS(ExceptionCMetry, Utilities::ExceptionBusiness);

}
