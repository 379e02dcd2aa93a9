#include "utilities/ComponentBase.h"

namespace Utilities {

ComponentBase::~ComponentBase() = default;

}
