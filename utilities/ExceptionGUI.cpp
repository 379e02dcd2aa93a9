#include "utilities/ExceptionGUI.h"

namespace Utilities {

ExceptionGUI::~ExceptionGUI() = default;

}
