#include "utilities/platform/ProcessEnd.h"

#include <cstdlib>

namespace Utilities {

void ProcessEnd::AtExit(void (*work)())
{
    std::atexit(work);
}

}
