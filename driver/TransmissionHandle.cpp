#include "driver/TransmissionHandle.h"

#include "driver/ConditionItems.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

TransmissionHandle::TransmissionHandle() = default;

TransmissionHandle::~TransmissionHandle() = default;

bool TransmissionHandle::Measure(const Utilities::String& type)
{
    return RunOnOpenHandle([this, &type] { MeasureType(type); });
}

bool TransmissionHandle::Calibrate()
{
    return RunOnOpenHandle([this] { ReferenceSteps(); });
}

Utilities::String TransmissionHandle::GetMode()
{
    return "Transmission";
}

void TransmissionHandle::MeasureType(const Utilities::String& type)
{
    if (type == "Dark") {
        Utilities::Vector<long> darkRow;
        MeasureDark(darkRow);
    } else if (type == "Reference") {
        if (!Calibrate()) {
            throw Utilities::ExceptionOutOfBound(GetLastError());
        }
    } else if (type == "Single") {
        MeasureSingle();
    } else {
        Raise("Unknown measurement type");
    }
}

void TransmissionHandle::MeasureSingle()
{
    SensorData sensor;
    MeasureSensor(sensor);
    if (calculation->IsSaturated(sensor)) {
        Raise("Sensor is saturated");
    }
    sample = SpectrumData();
    calculation->CalculateSample(sensor, sample, "Transmission");
}

void TransmissionHandle::ReferenceSteps()
{
    const bool adapt = ConditionU32(ConditionItems::adaptIntegrationTime) != 0;
    SensorData sensor;
    MeasureSensor(sensor);
    if (calculation->CalculateReference(sensor) || !adapt) {
        return;
    }
    const float shortest = calculation->MinIntegrationTime();
    SetConditionFloat(ConditionItems::integrationTime, shortest);
    SensorData probe;
    MeasureSensor(probe);
    SetConditionFloat(ConditionItems::integrationTime, calculation->NewIntegrationTime(probe, shortest, 1.0f, true));
}

}
