#pragma once

#include <cstdint>

namespace DeviceDriver {

// The numbers of the items of the "PhysicalConditions" that go to the instrument with the next
// measurement, as the handles and the measuring interfaces above them set them.
struct ConditionItems {
    static constexpr uint16_t lampOffDuringMeasurement = 2000;
    static constexpr uint16_t lampTime = 2001;
    static constexpr uint16_t gain = 2002;
    static constexpr uint16_t lampOnAfterMeasurement = 2003;
    static constexpr uint16_t countFromReplacementItem = 2008;
    static constexpr uint16_t integrationTime = 2009;
    static constexpr uint16_t count = 2010;
    static constexpr uint16_t adaptIntegrationTime = 2011;
    // The client's count of readings, used in place of `count` when `countFromReplacementItem` is set.
    static constexpr uint16_t replacementCount = 9189;
};

}
