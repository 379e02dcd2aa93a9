#include "driver/PaviloFunctionalityByte.h"

namespace DeviceDriver {

PaviloFunctionalityByte::~PaviloFunctionalityByte() = default;

}
