#include "utilities/ExceptionNamingService.h"

namespace Utilities {

ExceptionNamingService::~ExceptionNamingService() = default;

}
