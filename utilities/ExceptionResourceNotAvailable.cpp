#include "utilities/ExceptionResourceNotAvailable.h"

namespace Utilities {

ExceptionResourceNotAvailable::~ExceptionResourceNotAvailable() = default;

}
