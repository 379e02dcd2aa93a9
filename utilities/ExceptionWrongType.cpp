#include "utilities/ExceptionWrongType.h"

namespace Utilities {

ExceptionWrongType::~ExceptionWrongType() = default;

}
