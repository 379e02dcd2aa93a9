#include "driver/AmbientLightHandle.h"

#include <cmath>

#include "driver/ConditionItems.h"
#include "driver/RecordIds.h"
#include "utilities/ExceptionOutOfBound.h"

namespace DeviceDriver {

const std::array<AmbientLightHandle::Setting, AmbientLightHandle::gridSize> AmbientLightHandle::grid{{
    {0.01f, 1, 100},
    {0.1f, 1, 10},
    {1.0f, 1, 1},
    {1.0f, 0, 1},
}};

// The items that the grid darks change, put back however the darks end.
struct AmbientLightHandle::SavedItems {
    uint32_t lampOff;
    uint32_t replacementCount;
    float integrationTime;
    uint32_t gain;
    uint32_t count;
};

AmbientLightHandle::AmbientLightHandle() : gainRatio(1.0f) { }

AmbientLightHandle::~AmbientLightHandle() = default;

bool AmbientLightHandle::Open()
{
    if (!MeasurementHandle::Open()) {
        return false;
    }
    try {
        ConfigurationData calibrationData("CalibrationData");
        driver->ReadCalibrationData(calibrationData);
        for (auto& gridCalculation : gridCalculations) {
            gridCalculation = Utilities::SmartPointer<DriverCalculation>(new DriverCalculation(calibrationData));
        }
        calibrationData.GetFloat(CalibrationRecords::gainRatio, gainRatio);
        return true;
    } catch (const Utilities::ExceptionOutOfBound& failure) {
        SetLastError(failure);
        return false;
    }
}

bool AmbientLightHandle::Close()
{
    for (auto& gridCalculation : gridCalculations) {
        gridCalculation = Utilities::SmartPointer<DriverCalculation>();
    }
    return MeasurementHandle::Close();
}

Utilities::String AmbientLightHandle::GetMode()
{
    return "AmbientLight";
}

Utilities::Vector<long>& AmbientLightHandle::MeasureDark(Utilities::Vector<long>& row)
{
    MeasurementHandle::MeasureDark(row);
    const SavedItems saved{ConditionU32(ConditionItems::lampOffDuringMeasurement),
        ConditionU32(ConditionItems::countFromReplacementItem), ConditionFloat(ConditionItems::integrationTime),
        ConditionU32(ConditionItems::gain), ConditionU32(ConditionItems::count)};
    auto restore = [this, &saved] {
        SetConditionU32(ConditionItems::lampOffDuringMeasurement, saved.lampOff);
        SetConditionU32(ConditionItems::countFromReplacementItem, saved.replacementCount);
        SetConditionFloat(ConditionItems::integrationTime, saved.integrationTime);
        SetConditionU32(ConditionItems::gain, saved.gain);
        SetConditionU32(ConditionItems::count, saved.count);
    };
    try {
        MeasureGridDarks();
    } catch (const Utilities::ExceptionOutOfBound&) {
        restore();
        throw;
    }
    restore();
    return row;
}

std::size_t AmbientLightHandle::NearestSetting(float integrationTime, uint32_t gain) const
{
    const float wanted = EffectiveTime(integrationTime, gain);
    std::array<float, gridSize> distance{};
    for (std::size_t index = 0; index < gridSize; ++index) {
        distance[index] = EffectiveTime(grid[index].integrationTime, grid[index].gain) - wanted;
    }
    std::size_t longer = 0;
    while (longer < gridSize && !(distance[longer] > 0.0f)) {
        ++longer;
    }
    if (longer == gridSize) {
        return gridSize - 1;
    }
    if (longer == 0) {
        return 0;
    }
    return std::fabs(distance[longer - 1]) > std::fabs(distance[longer]) ? longer : longer - 1;
}

bool AmbientLightHandle::MeasureType(const Utilities::String& type)
{
    if (type == "Dark") {
        Utilities::Vector<long> darkRow;
        MeasureDark(darkRow);
        return true;
    }
    if (type == "Single Continuous") {
        MeasureAdaptedSingle("AmbientLight");
        return true;
    }
    if (type == "Single Grid") {
        MeasureGridSingle();
        return true;
    }
    return false;
}

void AmbientLightHandle::MeasureGridDarks()
{
    SetConditionU32(ConditionItems::lampOffDuringMeasurement, 1);
    SetConditionU32(ConditionItems::countFromReplacementItem, 0);
    for (std::size_t index = 0; index < gridSize; ++index) {
        UseSetting(index);
        SensorData sensor;
        MeasureSensor(sensor);
        gridCalculations[index]->CalculateDark(sensor);
    }
}

void AmbientLightHandle::MeasureGridSingle()
{
    const bool adapt = ConditionU32(ConditionItems::adaptIntegrationTime) != 0;
    std::size_t index =
        NearestSetting(ConditionFloat(ConditionItems::integrationTime), ConditionU32(ConditionItems::gain));
    if (adapt) {
        UseSetting(0);
        SensorData probe;
        MeasureSensor(probe);
        const float wanted = calculation->NewIntegrationTime(probe, grid[0].integrationTime, 1.0f, false);
        index = NearestSetting(wanted, grid[0].gain);
    }
    UseSetting(index);
    SensorData sensor;
    MeasureSensor(sensor);
    if (gridCalculations[index]->IsSaturated(sensor)) {
        Raise("Sensor is saturated");
    }
    sample = SpectrumData();
    gridCalculations[index]->CalculateSample(sensor, sample, "AmbientLight");
}

void AmbientLightHandle::UseSetting(std::size_t index)
{
    SetConditionFloat(ConditionItems::integrationTime, grid[index].integrationTime);
    SetConditionU32(ConditionItems::gain, grid[index].gain);
    SetConditionU32(ConditionItems::count, grid[index].count);
}

float AmbientLightHandle::EffectiveTime(float integrationTime, uint32_t gain) const
{
    return gain == 0 ? integrationTime * gainRatio : integrationTime;
}

}
