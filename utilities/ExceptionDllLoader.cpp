#include "utilities/ExceptionDllLoader.h"

namespace Utilities {

ExceptionDllLoader::~ExceptionDllLoader() = default;

}
