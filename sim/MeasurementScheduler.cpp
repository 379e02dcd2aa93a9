#include "sim/MeasurementScheduler.h"

#include <algorithm>
#include <cmath>

#include "sim/Sensor.h"
#include "sim/WireFrame.h"

namespace OrbelSim {

namespace {

constexpr float integrationTick = 6.8e-5f;
constexpr double lampTickInIntegrationTicks = 130.0;
// Keeps a wrong count from asking for more memory than a scan of minutes would.
constexpr std::size_t maxMeasurements = 65536;

} // namespace

MeasurementScheduler::MeasurementScheduler(MeasurementEngine& engine, const SimClock& clock)
    : engine(engine), clock(clock), target(TargetCatalog::Parse("tile", engine.GetOptics().TileRecord()))
{
}

void MeasurementScheduler::SetParameters(const std::vector<std::uint8_t>& payload)
{
    parameters.integrationTicks = WireFrame::GetU16(payload.data());
    parameters.lampTicks = WireFrame::GetU16(payload.data() + 2);
    parameters.count = WireFrame::GetU16(payload.data() + 4);
    parameters.flags = payload[6];
}

std::vector<std::uint8_t> MeasurementScheduler::ParameterAnswer() const
{
    std::vector<std::uint8_t> answer;
    WireFrame::PutU16(answer, parameters.integrationTicks);
    WireFrame::PutU16(answer, parameters.lampTicks);
    WireFrame::PutU16(answer, parameters.count);
    answer.push_back(parameters.flags);
    answer.push_back(0);
    return answer;
}

void MeasurementScheduler::SetStrip(Strip drawn, double speedMmPerSecond)
{
    strip = std::move(drawn);
    speed = speedMmPerSecond;
}

bool MeasurementScheduler::LampOnAfter() const
{
    return (parameters.flags & 0x02) == 0 && (parameters.flags & 0x08) != 0;
}

PendingData MeasurementScheduler::Start()
{
    const MeasureParameters p = parameters;
    const double integrationTime = static_cast<float>(p.integrationTicks * integrationTick);
    const double lampTime = p.lampTicks * lampTickInIntegrationTicks * integrationTick;
    const int gain = (p.flags & 0x04) ? 1 : 0;
    const bool lampLit = (p.flags & 0x02) == 0;
    const bool scan = (p.flags & 0x01) != 0;
    return scan ? Scan(gain, integrationTime, lampTime, lampLit)
                : SingleMeasurement(gain, integrationTime, lampTime, lampLit);
}

PendingData MeasurementScheduler::SingleMeasurement(int gain, double integrationTime, double lampTime, bool lampLit)
{
    PendingData data;
    const std::size_t count = parameters.count;
    const Scene scene = engine.SceneOf(target);
    for (std::size_t i = 0; i < count; ++i) {
        Sensor::AppendBlock(data.bytes, engine.Read(scene, lampLit, gain, integrationTime));
    }
    data.readiness.emplace_back(data.bytes.size(), clock.After(clock.Now(), lampTime + count * integrationTime));
    ++(lampLit ? counts.measurements : counts.darkMeasurements);
    return data;
}

PendingData MeasurementScheduler::Scan(int gain, double integrationTime, double lampTime, bool lampLit)
{
    PendingData data;
    data.scan = true;
    const Strip drawn = strip ? *strip : Strip::Uniform(target);
    std::vector<Scene> scenes;
    for (const Patch& patch : drawn.Patches()) {
        scenes.push_back(engine.SceneOf(patch.target));
    }
    const double step = speed * integrationTime;
    const std::size_t count = parameters.count;
    const std::size_t along = step > 0.0 ? static_cast<std::size_t>(std::floor(drawn.Travel() / step)) + 1 : 1;
    const std::size_t measurements = (along + count - 1) / count * count;
    if (measurements > maxMeasurements) {
        return data;
    }
    const auto start = clock.Now();
    for (std::size_t i = 0; i < measurements; ++i) {
        const double travelled = std::min(static_cast<double>(i) * step, drawn.Travel());
        const double smear = i + 1 < along ? step : 0.0;
        const Scene scene = MeasurementEngine::Mix(scenes, drawn.Shares(travelled, smear));
        Sensor::AppendBlock(data.bytes, engine.Read(scene, lampLit, gain, integrationTime));
        data.readiness.emplace_back(data.bytes.size(), clock.After(start, lampTime + (i + 1) * integrationTime));
    }
    ++counts.scans;
    return data;
}

} // namespace OrbelSim
