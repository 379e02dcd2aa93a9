#include "driver/ExceptionPaviloCommunication.h"

namespace DeviceDriver {

ExceptionPaviloCommunication::~ExceptionPaviloCommunication() = default;

}
