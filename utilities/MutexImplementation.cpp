#include "utilities/MutexImplementation.h"

namespace Utilities {

Diagnostics::String MutexImplementation::GetValueString() const
{
    return Diagnostics::String();
}

}
