#pragma once

#include <cstddef>
#include <deque>

#include "driver/SensorData.h"

namespace DeviceDriver {

// The measurements of one scan, one row each, oldest first, with the mark that the scan has
// ended. Filled and emptied by one thread, one after the other.
class SensorDataFifo {
public:
    SensorDataFifo() = default;
    SensorDataFifo(const SensorDataFifo&) = delete;
    SensorDataFifo& operator=(const SensorDataFifo&) = delete;

    void Push(const SensorData& measurement);
    // False when the FIFO is empty.
    bool Pop(SensorData& measurement);
    std::size_t Size() const { return measurements.size(); }

    void SetFinished(bool flag) { finished = flag; }
    bool IsFinished() const { return finished; }

private:
    std::deque<SensorData> measurements;
    bool finished = false;
};

}
