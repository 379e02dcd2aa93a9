#include "sim/SimClock.h"

namespace OrbelSim {

SimClock::SimClock(double scale) : scale(scale) { }

SimClock::Clock::time_point SimClock::After(Clock::time_point from, double modelSeconds) const
{
    return from + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(modelSeconds * scale));
}

} // namespace OrbelSim
