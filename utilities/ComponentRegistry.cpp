#include "utilities/ComponentRegistry.h"

namespace Utilities {

ComponentRegistry::~ComponentRegistry() = default;

}
