#include "utilities/ThreadImplementation.h"

namespace Utilities {

Diagnostics::String ThreadImplementation::GetValueString() const
{
    return Diagnostics::String();
}

}
