#include "utilities/ExceptionOutOfMemory.h"

namespace Utilities {

ExceptionOutOfMemory::~ExceptionOutOfMemory() = default;

}
