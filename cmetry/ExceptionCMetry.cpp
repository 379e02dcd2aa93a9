#include "cmetry/ExceptionCMetry.h"

namespace CMetry {

ExceptionCMetry::~ExceptionCMetry() = default;

}
