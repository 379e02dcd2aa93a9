#include "driver/Timing.h"

namespace DeviceDriver {

Timing::~Timing() = default;

double Timing::SecondsSince(const TimeStamp& then)
{
    const TimeStamp now = Now();
    const double seconds = static_cast<double>(now.GetSeconds()) - static_cast<double>(then.GetSeconds());
    const double milliseconds = static_cast<double>(now.Milliseconds()) - static_cast<double>(then.Milliseconds());
    return seconds + milliseconds / 1000.0;
}

uint32_t Timing::Time()
{
    return Now().GetSeconds();
}

}
