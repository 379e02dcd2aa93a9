#pragma once

#include "utilities/ExceptionBusiness.h"

namespace Utilities {

// A calculation has no result.
ORBEL_EXCEPTION_CLASS(ExceptionCalculationProblem, ExceptionBusiness);

}
