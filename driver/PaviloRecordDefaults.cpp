#include "driver/PaviloRecordDefaults.h"

#include <cstdint>
#include <initializer_list>

#include "driver/ConfigurationData.h"

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
    SetFloatVectors(data, {1000, 1001, 1004, 1100, 1101, 1102}, CalibrationVectorLength, -1.0f);
    SetU32Vectors(data, {1002, 1003}, CalibrationVectorLength, -1);
    SetU32s(
        data, {1204, 1205, 1207, 1208, 1211, 1212, 3001, 3002, 3007, 3008, 3010, 3011, 3012, 3013, 4000}, 0xFFFFFFFFu);
    SetFloats(data, {1213, 1221, 1222, 3014}, -1.0f);
    data.MarkAll(true);
}

void PaviloRecordDefaults::FillLog(ConfigurationData& data)
{
    SetU32s(data, {10000, 10002, 10003, 10005, 10012, 10020, 10021}, 0);
    SetFloats(data, {10001, 10004, 10013}, 0.0f);
    SetU32Vectors(data, {10010, 10011}, LogVectorLength, 0);
    data.MarkAll(true);
}

void PaviloRecordDefaults::FillConditions(ConfigurationData& data)
{
    SetU32s(
        data, {2000, 2002, 2003, 2004, 2005, 2006, 2007, 2008, 2010, 2011, 2012, 2013, 2020, 3010, 9189}, 0xFFFFFFFFu);
    SetFloats(data, {2001, 2009}, -1.0f);
    data.MarkAll(true);
}

}
