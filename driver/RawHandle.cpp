#include "driver/RawHandle.h"

namespace DeviceDriver {

RawHandle::RawHandle() = default;

RawHandle::~RawHandle() = default;

bool RawHandle::Measure(const Utilities::String& type)
{
    return RunOnOpenHandle([this, &type] {
        if (type != "Single") {
            Raise("Unknown measurement type");
        }
        MeasureRaw();
    });
}

bool RawHandle::Calibrate()
{
    SetLastError("No calibration in raw mode");
    return false;
}

Utilities::String RawHandle::GetMode()
{
    return "Raw";
}

void RawHandle::MeasureRaw()
{
    SensorData sensor;
    MeasureSensor(sensor);
    sensor.Mean();
    const Utilities::Vector<long>& pixels = sensor.Raw()[0];
    Utilities::Vector<float> row(pixels.Size());
    for (unsigned long index = 0; index < pixels.Size(); ++index) {
        row[index] = static_cast<float>(pixels[index]);
    }
    sample = SpectrumData();
    sample.Resize(1);
    sample.FirstRow();
    sample.Store(row);
    sample.SetGain(sensor.Gain());
    sample.SetIntegrationTime(sensor.IntegrationTime());
}

}
