#include "driver/platform/UsbConnection.h"

namespace DeviceDriver {

UsbConnection::UsbConnection(const Utilities::String& path) : path(path) { }

UsbConnection::~UsbConnection() = default;

}
