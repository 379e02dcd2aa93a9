#pragma once

#include "diagnostics/String.h"

namespace CMetry {

// The colorimetry as an object, for those that hold services rather than call static functions;
// its operations are those of CMetryCalculator.
class CMetryService {
public:
    Diagnostics::String GetValueString() const;
};

}
