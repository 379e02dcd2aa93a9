#include "driver/WhiteTileWindow.h"

namespace DeviceDriver {

WhiteTileWindow::WhiteTileWindow(float lowestA, float highestA, float lowestB, float highestB, uint16_t filter)
    : lowestA(lowestA), highestA(highestA), lowestB(lowestB), highestB(highestB), filter(filter)
{
}

// A UV-cut filter leaves next to nothing below 400 nm; without it the lamp shows its blue end.
WhiteTileWindow WhiteTileWindow::ForCheckKind(uint32_t checkKind)
{
    if (checkKind == uvCutCheckKind) {
        return WhiteTileWindow(0.0f, 0.05f, 1.2f, 1.76f, uvCutFilter);
    }
    return WhiteTileWindow(0.11f, 0.22f, 1.35f, 1.6f, plainFilter);
}

bool WhiteTileWindow::Contains(float a, float b) const
{
    return lowestA <= a && a <= highestA && lowestB <= b && b <= highestB;
}

}
