#pragma once

#include <cstdint>

namespace DeviceDriver {

// The records of the instrument's EEPROM that the factory writes.
struct CalibrationRecords {
    // Linearisation polynomials of the sensor, one per gain.
    static constexpr std::uint16_t linearisationGain1 = 1000;
    static constexpr std::uint16_t linearisationGain0 = 1001;
    // The spectral matrix: first pixel and pixel count of each wavelength, then the coefficients.
    static constexpr std::uint16_t matrixFirstPixel = 1002;
    static constexpr std::uint16_t matrixPixelCount = 1003;
    static constexpr std::uint16_t matrixCoefficients = 1004;
    static constexpr std::uint16_t tileReflectance = 1100;
    static constexpr std::uint16_t emissionFactors = 1101;
    static constexpr std::uint16_t ambientLightFactors = 1102;
    // The raw level that an adapted integration time aims at.
    static constexpr std::uint16_t targetLevel = 1204;
    static constexpr std::uint16_t darkLimit = 1205;
    static constexpr std::uint16_t saturationGain1 = 1207;
    static constexpr std::uint16_t saturationGain0 = 1208;
    static constexpr std::uint16_t serialNumber = 1211;
    // Sensitivity of gain 0 over that of gain 1.
    static constexpr std::uint16_t gainRatio = 1213;
    // Seconds.
    static constexpr std::uint16_t shortestIntegrationTime = 1221;
    static constexpr std::uint16_t longestIntegrationTime = 1222;
    // 130 selects the white tile table of the filter kind.
    static constexpr std::uint16_t whiteCheckKind = 3012;
    // Kept by the instrument and never read by the host, yet read and written with the others.
    static constexpr std::uint16_t storedOnlyWords[] = {1212, 3001, 3002, 3007, 3008, 3011, 3013, 4000};
    static constexpr std::uint16_t storedOnlyFloat = 3014;
};

// The records of the instrument's log, kept in the EEPROM twice.
struct LogRecords {
    // The checksum of the copy that holds it.
    static constexpr std::uint16_t checksum = 10000;
    static constexpr std::uint16_t lastIntegrationTime = 10001;
    static constexpr std::uint16_t lampMeasurements = 10002;
    static constexpr std::uint16_t scans = 10003;
    // Seconds, summed.
    static constexpr std::uint16_t lampSeconds = 10004;
    static constexpr std::uint16_t darkMeasurements = 10005;
    // The stored white: raw pixels of its dark and of its white, its gain and integration time.
    static constexpr std::uint16_t storedDark = 10010;
    static constexpr std::uint16_t storedWhite = 10011;
    static constexpr std::uint16_t storedGain = 10012;
    static constexpr std::uint16_t storedIntegrationTime = 10013;
    // In the seconds of Timing.
    static constexpr std::uint16_t calibrationTime = 10020;
    // The count of lamp measurements at the last calibration.
    static constexpr std::uint16_t measurementsAtCalibration = 10021;
};

}
