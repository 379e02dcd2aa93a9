/* Orbel: the module of the hand-held USB spectrophotometer.
 *
 * Fourteen plain functions. Status functions answer one of the result codes below;
 * the text behind the last failure is OB_GetDeviceInfo("LastError"). Spectra are
 * 36 floats, 380 nm to 730 nm in steps of 10 nm. Every output buffer belongs to the
 * caller. The texts returned by OB_GetDeviceInfo and OB_GetOption stay valid until
 * the next call of either function. */
#ifndef ORBEL_H
#define ORBEL_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#if defined(_WIN32)
#define OB_EXPORT __declspec(dllexport)
#else
#define OB_EXPORT __attribute__((visibility("default")))
#endif

enum {
    OB_NoError = 0,
    OB_DeviceNotReady = 1,
    OB_DeviceNotConnected = 2,
    OB_DeviceNotCalibrated = 3,
    OB_KeyNotPressed = 4,
    OB_NoSubstrateWhiteReference = 5,
    OB_InvalidMeasurementMode = 6,
    OB_StripRecognitionFailed = 7,
    OB_NoDataAvailable = 8,
    OB_ExceptionOccured = 9,
    OB_InvalidArgument = 10,
    OB_UnknownError = 11
};

OB_EXPORT const char* OB_GetDeviceInfo(const char* key);
OB_EXPORT int32_t OB_IsConnected(void);
OB_EXPORT int32_t OB_KeyPressed(void);
OB_EXPORT int32_t OB_GetNumberOfAvailableSamples(void);
OB_EXPORT int32_t OB_Calibrate(void);
OB_EXPORT int32_t OB_TriggerMeasurement(void);
OB_EXPORT int32_t OB_TriggerCountedScan(int32_t count);
OB_EXPORT int32_t OB_GetSpectrum(float* spectrum, int32_t index);
OB_EXPORT int32_t OB_GetTriStimulus(float* tristimulus, int32_t index);
OB_EXPORT int32_t OB_GetDensity(float* density, int32_t index);
OB_EXPORT int32_t OB_GetDensities(float* densities, int32_t* autoIndex, int32_t index);
OB_EXPORT int32_t OB_SetOption(const char* key, const char* value);
OB_EXPORT const char* OB_GetOption(const char* key);
OB_EXPORT int32_t OB_SetSubstrate(const float* spectrum);

#ifdef __cplusplus
}
#endif

#endif
