#include "driver/EmissionHandle.h"

#include "driver/ConditionItems.h"

namespace DeviceDriver {

namespace {

// Saturated at the default time, the shortest time this many times over gives a reading to
// calculate the new time from.
constexpr float probeTimeFactor = 30.0f;

}

EmissionHandle::EmissionHandle() = default;

EmissionHandle::~EmissionHandle() = default;

bool EmissionHandle::Measure(const Utilities::String& type)
{
    return RunOnOpenHandle([this, &type] {
        if (!MeasureType(type)) {
            Raise("Unknown measurement type!");
        }
    });
}

bool EmissionHandle::Calibrate()
{
    SetLastError(IsOpen() ? "Unable to perform calibration!" : handleNotOpen);
    return false;
}

Utilities::String EmissionHandle::GetMode()
{
    return "Emission";
}

bool EmissionHandle::MeasureType(const Utilities::String& type)
{
    if (type == "Dark") {
        Utilities::Vector<long> darkRow;
        MeasureDark(darkRow);
        return true;
    }
    if (type == "Single") {
        MeasureAdaptedSingle("Emission");
        return true;
    }
    return false;
}

void EmissionHandle::MeasureAdaptedSingle(const Utilities::String& mode)
{
    const bool adapt = ConditionU32(ConditionItems::adaptIntegrationTime) != 0;
    SensorData sensor;
    MeasureSensor(sensor);
    if (calculation->IsSaturated(sensor) && adapt) {
        const float probeTime = calculation->MinIntegrationTime() * probeTimeFactor;
        SetConditionFloat(ConditionItems::integrationTime, probeTime);
        SensorData probe;
        MeasureSensor(probe);
        SetConditionFloat(
            ConditionItems::integrationTime, calculation->NewIntegrationTime(probe, probeTime, 1.0f, true));
        Raise("New integration time calculated. Please measure again dark.");
    }
    if (calculation->IsSaturated(sensor)) {
        Raise("Sensor is saturated");
    }
    sample = SpectrumData();
    calculation->CalculateSample(sensor, sample, mode);
}

}
