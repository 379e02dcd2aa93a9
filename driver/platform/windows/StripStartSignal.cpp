#include "driver/platform/StripStartSignal.h"

#include <windows.h>

namespace DeviceDriver {

void StripStartSignal::Sound()
{
    ::MessageBeep(MB_OK);
}

}
