#include "driver/PaviloRecordDefaults.h"

#include <cstdint>
#include <initializer_list>

#include "driver/ConditionItems.h"
#include "driver/ConfigurationData.h"
#include "driver/RecordIds.h"

namespace DeviceDriver {

namespace {

constexpr unsigned long CalibrationVectorLength = 2;

void SetU32s(ConfigurationData& data, std::initializer_list<std::uint16_t> ids, std::uint32_t value)
{
    for (std::uint16_t id : ids) {
        data.SetU32(id, value);
    }
}

void SetFloats(ConfigurationData& data, std::initializer_list<std::uint16_t> ids, float value)
{
    for (std::uint16_t id : ids) {
        data.SetFloat(id, value);
    }
}

void SetU32Vectors(ConfigurationData& data, std::initializer_list<std::uint16_t> ids, unsigned long length, long value)
{
    Utilities::Vector<long> vector(length);
    for (unsigned long i = 0; i < length; ++i) {
        vector[i] = value;
    }
    for (std::uint16_t id : ids) {
        data.SetU32Vector(id, vector);
    }
}

void SetFloatVectors(
    ConfigurationData& data, std::initializer_list<std::uint16_t> ids, unsigned long length, float value)
{
    Utilities::Vector<float> vector(length);
    for (unsigned long i = 0; i < length; ++i) {
        vector[i] = value;
    }
    for (std::uint16_t id : ids) {
        data.SetFloatVector(id, vector);
    }
}

}

void PaviloRecordDefaults::FillCalibration(ConfigurationData& data)
{
    using Records = CalibrationRecords;
    SetFloatVectors(data,
        {Records::linearisationGain1, Records::linearisationGain0, Records::matrixCoefficients,
            Records::tileReflectance, Records::emissionFactors, Records::ambientLightFactors},
        CalibrationVectorLength, -1.0f);
    SetU32Vectors(data, {Records::matrixFirstPixel, Records::matrixPixelCount}, CalibrationVectorLength, -1);
    SetU32s(data,
        {Records::targetLevel, Records::darkLimit, Records::saturationGain1, Records::saturationGain0,
            Records::serialNumber, ConditionItems::storedCondition, Records::whiteCheckKind},
        0xFFFFFFFFu);
    for (std::uint16_t id : Records::storedOnlyWords) {
        data.SetU32(id, 0xFFFFFFFFu);
    }
    SetFloats(data,
        {Records::gainRatio, Records::shortestIntegrationTime, Records::longestIntegrationTime,
            Records::storedOnlyFloat},
        -1.0f);
    data.MarkAll(true);
}

void PaviloRecordDefaults::FillLog(ConfigurationData& data)
{
    using Records = LogRecords;
    SetU32s(data,
        {Records::checksum, Records::lampMeasurements, Records::scans, Records::darkMeasurements, Records::storedGain,
            Records::calibrationTime, Records::measurementsAtCalibration},
        0);
    SetFloats(data, {Records::lastIntegrationTime, Records::lampSeconds, Records::storedIntegrationTime}, 0.0f);
    SetU32Vectors(data, {Records::storedDark, Records::storedWhite}, LogVectorLength, 0);
    data.MarkAll(true);
}

void PaviloRecordDefaults::FillConditions(ConfigurationData& data)
{
    using Items = ConditionItems;
    SetU32s(data,
        {Items::lampOffDuringMeasurement, Items::gain, Items::lampOnAfterMeasurement, Items::status, Items::reserved,
            Items::miscWord1, Items::reset, Items::countFromReplacementItem, Items::count, Items::adaptIntegrationTime,
            Items::miscByte6, Items::miscWord0, Items::wrapThreshold, Items::storedCondition, Items::replacementCount},
        0xFFFFFFFFu);
    SetFloats(data, {Items::lampTime, Items::integrationTime}, -1.0f);
    data.MarkAll(true);
}

}
