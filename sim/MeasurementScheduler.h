#pragma once
// The measurement side of the instrument: the parameters the host sets, what lies under the
// aperture or is drawn past it, and the blocks a measurement request makes ready, each at the
// time the real instrument would have it (see CommandTable.h for the timing of a scan).

#include <cstdint>
#include <optional>
#include <vector>

#include "sim/MeasurementEngine.h"
#include "sim/PendingData.h"
#include "sim/SimClock.h"
#include "sim/Strip.h"
#include "sim/Target.h"

namespace OrbelSim {

struct MeasureParameters {
    std::uint16_t integrationTicks = 300;
    std::uint16_t lampTicks = 17;
    std::uint16_t count = 4;
    std::uint8_t flags = 0;
};

class MeasurementScheduler {
public:
    struct Counts {
        std::uint64_t measurements = 0;
        std::uint64_t darkMeasurements = 0;
        std::uint64_t scans = 0;
    };

    MeasurementScheduler(MeasurementEngine& engine, const SimClock& clock);

    void SetParameters(const std::vector<std::uint8_t>& payload);
    std::vector<std::uint8_t> ParameterAnswer() const;
    void ResetParameters() { parameters = MeasureParameters{}; }
    // The blocks of one request with the present parameters, whose count must not be 0; no bytes
    // when it would take more than 65536 measurements.
    PendingData Start();
    // Whether the lamp stays on after the present request.
    bool LampOnAfter() const;

    void Place(Target placed) { target = std::move(placed); }
    void SetStrip(Strip drawn, double speedMmPerSecond);

    const MeasureParameters& Parameters() const { return parameters; }
    const Target& Placed() const { return target; }
    const std::optional<Strip>& Drawn() const { return strip; }
    double Speed() const { return speed; }
    const Counts& Done() const { return counts; }

private:
    PendingData SingleMeasurement(int gain, double integrationTime, double lampTime, bool lampLit);
    PendingData Scan(int gain, double integrationTime, double lampTime, bool lampLit);

    MeasurementEngine& engine;
    const SimClock& clock;
    MeasureParameters parameters;
    Target target;
    std::optional<Strip> strip;
    double speed = Strip::defaultSpeed;
    Counts counts;
};

} // namespace OrbelSim
