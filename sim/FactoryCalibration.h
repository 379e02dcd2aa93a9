#pragma once
// The EEPROM contents of a new instrument: the factory calibration derived from its optics, and
// a log that has seen the factory's own measurements.
//
// Records (ids, types as the host reads them):
//   1000, 1001  float vector, linearisation c0..c3 for gain 1 and gain 0 (raw to linear counts)
//   1002, 1003  u32 vectors of 36: first pixel and pixel count of each wavelength 380..730 nm
//   1004        float vector, the coefficients, wavelength after wavelength (they sum to 1 each)
//   1100        float vector of 36, the white tile's reflectance
//   1101        float vector of 36, emission factors: radiance in mW/(sr m^2 nm) per linear count per
//               second at gain 1, so that Y in cd/m^2 follows with the factor 0.683 over 1 nm steps
//   1102        float vector of 36, ambient-light factors: pi, from radiance to irradiance
//   1204 40000 target level; 1205 2500 dark limit; 1207, 1208 60000 saturation levels
//   1211 serial number; 1213 8.0 gain ratio; 1221 0.0068 s and 1222 4.0 s integration limits
//   3012 white check kind: 130 with the UV-cut filter, 129 without
// Records that are only stored, with values of this instrument's own choosing: 1212 date of
// manufacture as yyyymmdd; 3001 hardware revision; 3002 options; 3007 and 3008 lamp warm-up
// ticks; 3010 user slot; 3011 sensor type; 3013 flags; 3014 lamp ageing factor; 4000 record
// format version.
// The saturation levels are 60000 rather than 62000: the converter's largest word is the wrap
// threshold 0xF000 (61440), above which words read as negative, so a level above it could never
// be exceeded and "Sensor is saturated" could never be reported.

#include <cstdint>
#include <vector>

#include "sim/EepromBuilder.h"
#include "sim/Optics.h"

namespace OrbelSim {

class FactoryCalibration {
public:
    static constexpr std::uint32_t targetLevel = 40000;
    static constexpr std::uint32_t darkLimit = 2500;
    static constexpr std::uint32_t saturationLevel = 60000;
    static constexpr float shortestIntegrationTime = 0.0068f;
    static constexpr float longestIntegrationTime = 4.0f;
    static constexpr std::uint32_t whiteCheckUvCut = 130;
    static constexpr std::uint32_t whiteCheckNoFilter = 129;

    static std::vector<std::uint8_t> Image(const Optics& optics, std::uint32_t serial);
    static EepromFiles CalibrationFiles(const Optics& optics, std::uint32_t serial);
    static EepromFiles LogFiles(const Optics& optics);
};

} // namespace OrbelSim
