#include "driver/LowLevelDriver.h"

namespace DeviceDriver {

LowLevelDriver::~LowLevelDriver() = default;

}
