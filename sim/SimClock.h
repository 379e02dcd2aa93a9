#pragma once
// The instrument's sense of time. Every duration of the model (lamp lead, integration, the hand's
// travel) is multiplied by the time scale before it passes in real time: 0.01 runs a hundred times
// faster, 0 makes everything immediate.

#include <chrono>

namespace OrbelSim {

class SimClock {
public:
    using Clock = std::chrono::steady_clock;

    explicit SimClock(double scale);

    double Scale() const { return scale; }
    Clock::time_point Now() const { return Clock::now(); }
    Clock::time_point After(Clock::time_point from, double modelSeconds) const;

private:
    double scale;
};

} // namespace OrbelSim
