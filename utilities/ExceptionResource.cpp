#include "utilities/ExceptionResource.h"

namespace Utilities {

ExceptionResource::~ExceptionResource() = default;

}
