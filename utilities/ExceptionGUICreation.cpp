#include "utilities/ExceptionGUICreation.h"

namespace Utilities {

ExceptionGUICreation::~ExceptionGUICreation() = default;

}
