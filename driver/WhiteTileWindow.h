#pragma once

#include <cstdint>

namespace DeviceDriver {

// Where the white tile lies when it is seen through one kind of filter: the spectrum of the lamp
// on the tile, normalised at 550 nm, has its blue end (380 and 390 nm) at `a` and its red end
// (600 to 650 nm) at `b`. The instrument's record of the white check kind says which filter it
// carries, and so which window a tile must fall into.
class WhiteTileWindow {
public:
    static constexpr uint32_t uvCutCheckKind = 130;
    static constexpr uint16_t noFilter = 0;
    static constexpr uint16_t plainFilter = 1;
    static constexpr uint16_t uvCutFilter = 2;

    static WhiteTileWindow ForCheckKind(uint32_t checkKind);

    // All bounds are inclusive.
    bool Contains(float a, float b) const;
    // The filter that a tile inside the window is seen through.
    uint16_t Filter() const { return filter; }

private:
    WhiteTileWindow(float lowestA, float highestA, float lowestB, float highestB, uint16_t filter);

    float lowestA;
    float highestA;
    float lowestB;
    float highestB;
    uint16_t filter;
};

}
