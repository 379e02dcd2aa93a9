#include "utilities/ExceptionNullpointer.h"

namespace Utilities {

ExceptionNullpointer::~ExceptionNullpointer() = default;

}
