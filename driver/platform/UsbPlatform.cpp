#include "driver/platform/UsbPlatform.h"

#include <string>

namespace DeviceDriver {

UsbPlatform::~UsbPlatform() = default;

bool UsbPlatform::HasPrefix(const Utilities::String& path, const char* prefix)
{
    return path.ToStdString().rfind(prefix, 0) == 0;
}

}
