#include "driver/SensorDataFifo.h"

namespace DeviceDriver {

void SensorDataFifo::Push(const SensorData& measurement)
{
    measurements.push_back(measurement);
}

bool SensorDataFifo::Pop(SensorData& measurement)
{
    if (measurements.empty()) {
        return false;
    }
    measurement = measurements.front();
    measurements.pop_front();
    return true;
}

}
