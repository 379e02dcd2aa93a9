#include "utilities/ExceptionOutOfBound.h"

namespace Utilities {

ExceptionOutOfBound::~ExceptionOutOfBound() = default;

}
