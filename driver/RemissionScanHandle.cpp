#include "driver/RemissionScanHandle.h"

#include "driver/ConditionItems.h"
#include "driver/StateIds.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

namespace {

constexpr uint32_t whiteRepeats = 4;
constexpr float halfLevel = 0.5f;
constexpr float shortestStripTime = 0.012f;
constexpr uint32_t countChangeSleepMs = 300;
constexpr uint32_t scanSettleSleepMs = 1000;

}

RemissionScanHandle::RemissionScanHandle() = default;

RemissionScanHandle::~RemissionScanHandle() = default;

bool RemissionScanHandle::Measure(const Utilities::String& type)
{
    return RunOnOpenHandle([this, &type] { MeasureType(type); });
}

// A calibration cut short may have changed the integration time: the white of the last one no
// longer fits, and a scan must fail as not calibrated.
bool RemissionScanHandle::Calibrate()
{
    const bool calibrated = RunOnOpenHandle([this] { CalibrationSteps(); });
    if (!calibrated && !calculation.IsNull()) {
        calculation->DiscardWhite();
    }
    return calibrated;
}

Utilities::String RemissionScanHandle::GetMode()
{
    return "RemissionScan";
}

void RemissionScanHandle::MeasureType(const Utilities::String& type)
{
    if (type == "Dark") {
        Utilities::Vector<long> darkRow;
        MeasureDark(darkRow);
    } else if (type == "White") {
        if (!Calibrate()) {
            throw Utilities::ExceptionOutOfBound(GetLastError());
        }
    } else if (type == "Scan") {
        Scan();
    } else {
        Raise("Unknown measurement type");
    }
}

void RemissionScanHandle::Scan()
{
    SensorDataFifo strip;
    sampleFifo.Clear();
    sampleFifo.SetFinished(false);
    calculation->ResetWhite();
    Utilities::Vector<long> darkRow;
    MeasureDark(darkRow);
    MeasureStrip(strip);
    CalculateStrip(strip);
}

void RemissionScanHandle::CalculateStrip(SensorDataFifo& strip)
{
    SensorData sensor;
    SpectrumData spectrum;
    while (strip.Size() > 0 || !strip.IsFinished()) {
        spectrum = SpectrumData();
        // Filled on this thread before: an empty FIFO that isn't finished never fills.
        if (!strip.Pop(sensor)) {
            Raise("Invalid data fifo");
        }
        calculation->CalculateSample(sensor, spectrum, "Remission");
        sampleFifo.Push(spectrum);
    }
    sampleFifo.SetFinished(true);
}

void RemissionScanHandle::CalibrationSteps()
{
    const bool adapt = ConditionU32(ConditionItems::adaptIntegrationTime) != 0;
    const uint32_t count = ConditionU32(ConditionItems::count);
    SetConditionU32(ConditionItems::count, whiteRepeats);
    Sleep(countChangeSleepMs);
    if (adapt) {
        AdaptToHalfLevel();
    }
    Utilities::Vector<long> darkRow;
    MeasureDark(darkRow);
    SetConditionU32(ConditionItems::count, count);
    SensorData sensor;
    MeasureSensor(sensor);
    uint16_t filter = 0;
    calculation->CalculateWhite(sensor, filter, false, halfLevel);
    driver->SetState(StateIds::filter, filter);
}

void RemissionScanHandle::AdaptToHalfLevel()
{
    const float shortest = calculation->MinIntegrationTime();
    SetConditionFloat(ConditionItems::integrationTime, shortest);
    SensorData probe;
    MeasureSensor(probe);
    float time = calculation->NewIntegrationTime(probe, shortest, halfLevel, true);
    if (time < shortestStripTime) {
        time = shortestStripTime;
    }
    SetConditionFloat(ConditionItems::integrationTime, time);
    Sleep(scanSettleSleepMs);
}

}
