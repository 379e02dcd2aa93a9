#include "utilities/ExceptionMultithreading.h"

namespace Utilities {

ExceptionMultithreading::~ExceptionMultithreading() = default;

}
