#include "utilities/Preferences.h"

namespace Utilities {

Preferences::~Preferences() = default;

Diagnostics::String Preferences::GetValueString() const
{
    return Diagnostics::String();
}

}
