#pragma once

#include "driver/ConfigurationData.h"
#include "driver/SensorData.h"

namespace OrbelBench {

// A calibration and raw readings made up to the shape of the instrument's, so that the driver's
// calculation can be timed without a transport: 128 pixels, 36 wavelengths of 4 pixels each,
// dark at 1200 counts and a lamp the white check accepts.
class SyntheticSensor {
public:
    static DeviceDriver::ConfigurationData Calibration();
    // Rows of a sample of the given reflectance; the rows differ by a few counts.
    static DeviceDriver::SensorData Measurement(double reflectance, unsigned long rows, float integrationTime);
};

}
