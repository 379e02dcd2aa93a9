#pragma once

namespace DeviceDriver {

class ConfigurationData;

// The values that the records of the EEPROM and the measure conditions have before they are
// read, all marked, so that the next read or write takes every one of them.
class PaviloRecordDefaults {
public:
    static constexpr unsigned long LogVectorLength = 128;

    // -1 and -1.0; the vectors have two elements.
    static void FillCalibration(ConfigurationData& data);
    // 0 and 0.0; the vectors have 128 elements.
    static void FillLog(ConfigurationData& data);
    // -1 and -1.0.
    static void FillConditions(ConfigurationData& data);
};

}
