#include "driver/RemissionHandle.h"

#include "driver/ConditionItems.h"
#include "driver/RecordIds.h"
#include "driver/StateIds.h"
#include "driver/platform/Timing_PC.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

namespace {

constexpr double measurementSpacingSeconds = 1.0;
constexpr uint32_t spacingSleepMs = 800;
constexpr uint32_t settleSleepMs = 1000;

SensorData StoredSensor(uint32_t gain, float integrationTime, const Utilities::Vector<long>& row)
{
    SensorData sensor;
    sensor.SetGain(gain);
    sensor.SetIntegrationTime(integrationTime);
    Utilities::Vector<Utilities::Vector<long>> rows(1);
    rows[0] = row;
    sensor.SetRaw(rows);
    return sensor;
}

}

RemissionHandle::RemissionHandle() = default;

RemissionHandle::~RemissionHandle() = default;

bool RemissionHandle::Measure(const Utilities::String& type)
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        KeepSpacing();
        HoldingDevice([this, &type] { MeasureType(type); });
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        NoteMeasurementTime();
        return false;
    }
    NoteMeasurementTime();
    SetLastError(noError);
    return true;
}

bool RemissionHandle::Calibrate()
{
    if (!IsOpen()) {
        SetLastError(handleNotOpen);
        return false;
    }
    try {
        HoldingDevice([this] { CalibrationSteps(); });
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        NoteMeasurementTime();
        return false;
    }
    SetLastError(noError);
    NoteMeasurementTime();
    return true;
}

Utilities::String RemissionHandle::GetMode()
{
    return "Remission";
}

void RemissionHandle::KeepSpacing()
{
    if (Timing_PC().SecondsSince(lastMeasurement) < measurementSpacingSeconds) {
        Sleep(spacingSleepMs);
    }
}

void RemissionHandle::NoteMeasurementTime()
{
    lastMeasurement = Timing_PC().Now();
}

void RemissionHandle::MeasureType(const Utilities::String& type)
{
    Utilities::Vector<long> darkRow;
    if (type == "Dark") {
        MeasureDark(darkRow);
    } else if (type == "White") {
        if (!Calibrate()) {
            throw Utilities::ExceptionOutOfBound(GetLastError());
        }
    } else if (type == "StoredWhite") {
        UseStoredWhite();
    } else if (type == "Single") {
        MeasureSingle();
    } else {
        Raise("Unknown measurement type");
    }
}

void RemissionHandle::MeasureSingle()
{
    Utilities::Vector<long> darkRow;
    MeasureDark(darkRow);
    SensorData sensor;
    MeasureSensor(sensor);
    sample = SpectrumData();
    calculation->CalculateSample(sensor, sample, "Remission");
}

void RemissionHandle::UseStoredWhite()
{
    ConfigurationData log("LogData");
    if (!driver->GetLogData(log)) {
        Raise("Unable to get stored white data");
    }
    uint32_t gain = 0;
    float integrationTime = 0.0f;
    Utilities::Vector<long> darkRow;
    Utilities::Vector<long> whiteRow;
    log.GetU32(LogRecords::storedGain, gain);
    log.GetFloat(LogRecords::storedIntegrationTime, integrationTime);
    log.GetU32Vector(LogRecords::storedDark, darkRow);
    log.GetU32Vector(LogRecords::storedWhite, whiteRow);

    SensorData dark = StoredSensor(gain, integrationTime, darkRow);
    calculation->CalculateDark(dark);
    SensorData white = StoredSensor(gain, integrationTime, whiteRow);
    uint16_t filter = 0;
    calculation->CalculateWhite(white, filter, true, 1.0f);
    driver->SetState(StateIds::filter, filter);
    SetConditionFloat(ConditionItems::integrationTime, integrationTime);
    SetConditionU32(ConditionItems::gain, gain);
}

void RemissionHandle::CalibrationSteps()
{
    const bool adapt = ConditionU32(ConditionItems::adaptIntegrationTime) != 0;
    KeepSpacing();
    Utilities::Vector<long> darkRow;
    MeasureDark(darkRow);
    SensorData sensor;
    MeasureSensor(sensor);
    uint16_t filter = 0;
    bool levelIsRight = false;
    try {
        levelIsRight = calculation->CalculateWhite(sensor, filter, true, 1.0f);
    } catch (const Utilities::ExceptionOutOfBound&) {
        if (!adapt) {
            throw;
        }
    }
    if (!levelIsRight && adapt) {
        AdaptAndMeasureWhiteAgain(darkRow, sensor, filter);
    }
    StoreWhite(darkRow, sensor);
    BookCalibration(filter);
}

void RemissionHandle::AdaptAndMeasureWhiteAgain(Utilities::Vector<long>& darkRow, SensorData& sensor, uint16_t& filter)
{
    const float shortest = calculation->MinIntegrationTime();
    SetConditionFloat(ConditionItems::integrationTime, shortest);
    Sleep(settleSleepMs);
    SensorData probe;
    MeasureSensor(probe);
    SetConditionFloat(ConditionItems::integrationTime, calculation->NewIntegrationTime(probe, shortest, 1.0f, true));
    Sleep(settleSleepMs);
    MeasureDark(darkRow);
    sensor = SensorData();
    MeasureSensor(sensor);
    calculation->CalculateWhite(sensor, filter, true, 1.0f);
}

void RemissionHandle::StoreWhite(const Utilities::Vector<long>& darkRow, const SensorData& sensor)
{
    ConfigurationData log("LogData");
    if (!driver->GetLogData(log)) {
        Raise("Unable to store white data");
    }
    log.SetU32Vector(LogRecords::storedDark, darkRow);
    log.SetU32Vector(LogRecords::storedWhite, sensor.Raw()[0]);
    log.SetU32(LogRecords::storedGain, sensor.Gain());
    log.SetFloat(LogRecords::storedIntegrationTime, sensor.IntegrationTime());
    for (const uint16_t id :
        {LogRecords::storedDark, LogRecords::storedWhite, LogRecords::storedGain, LogRecords::storedIntegrationTime}) {
        log.Mark(id, true);
    }
    if (!driver->SetLogData(log)) {
        Raise("Unable to store white data");
    }
}

void RemissionHandle::BookCalibration(uint16_t filter)
{
    driver->SetState(StateIds::secondsSinceCalibration, 0);
    driver->SetState(StateIds::measurementsSinceCalibration, 0);
    driver->SetState(StateIds::filter, filter);
}

}
