#include "utilities/ExceptionComponentFactory.h"

namespace Utilities {

ExceptionComponentFactory::~ExceptionComponentFactory() = default;

}
