/* Orbel: the module of the hand-held USB spectrophotometer.
 *
 * Fourteen plain functions. Status functions answer one of the result codes below;
 * the text behind the last failure is OB_GetDeviceInfo("LastError"). Spectra are
 * 36 floats, 380 nm to 730 nm in steps of 10 nm. Every output buffer belongs to the
 * caller. The texts returned by OB_GetDeviceInfo and OB_GetOption stay valid until
 * the next call of either function. A null pointer argument answers OB_InvalidArgument;
 * no function lets an exception out. */

/* Threads and time bounds.
 *
 * Any number of host threads may call any function at any time. The module serves one call
 * at a time: a call waits until the call of another thread has returned. OB_IsConnected and
 * OB_KeyPressed wait only for the first call of the process; after it, while another thread's
 * call runs, they answer at once from what the module saw last (0 or 2; OB_KeyPressed 4 or 2,
 * and a press stays with the instrument for the next question). A lock of the instrument that
 * another user holds is never taken for a lost instrument. The texts of OB_GetDeviceInfo and
 * OB_GetOption belong to the calling thread: they stay valid until the same thread calls either
 * function again.
 *
 * Bounds, for one call that doesn't wait for another thread (add the calls it waits for):
 * - No instrument transfer: at once (results, options, substrate, "LastError").
 * - A measurement (OB_Calibrate, OB_TriggerMeasurement, OB_TriggerCountedScan): the readings it
 *   asks for, readings x integration time + lamp time + 0.5 s, plus 5 s for each transfer the
 *   instrument doesn't answer; a transfer that fails is tried once more after a reset. A scan
 *   also lasts as long as the strip is drawn.
 * - Control questions of the instrument (connection, key, state values): 2 s each.
 * - Opening the instrument, which the first call after it is plugged in does: the questions
 *   above, and its 8192-byte memory at 10 ms a byte + 5 s when the instrument doesn't answer.
 * A call that runs out of its bound answers 2 when the instrument has gone, else 9 with the
 * failing step in "LastError". */

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

/* The value of an information key ("Version", "MeasurementMode", "LastError",
 * "AvailableSamples", "Connection", "SerialNumber", ...). A failure answers its full error
 * text; a success leaves "LastError" as it was. */
OB_EXPORT const char* OB_GetDeviceInfo(const char* key);
/* 0 connected, 2 not connected. Leaves "LastError" alone. */
OB_EXPORT int32_t OB_IsConnected(void);
/* 0 the measurement key was pressed, 4 it wasn't, 2 not connected. Leaves "LastError" alone. */
OB_EXPORT int32_t OB_KeyPressed(void);
/* The number of samples of the last measurement; -1 if it can't be told. */
OB_EXPORT int32_t OB_GetNumberOfAvailableSamples(void);
OB_EXPORT int32_t OB_Calibrate(void);
OB_EXPORT int32_t OB_TriggerMeasurement(void);
/* Scanning mode only; count goes to the instrument. */
OB_EXPORT int32_t OB_TriggerCountedScan(int32_t count);
/* index selects a sample of the last measurement, from 0; -1 is the same as 0. */
OB_EXPORT int32_t OB_GetSpectrum(float* spectrum, int32_t index);
OB_EXPORT int32_t OB_GetTriStimulus(float* tristimulus, int32_t index);
OB_EXPORT int32_t OB_GetDensity(float* density, int32_t index);
/* Four densities, cyan, magenta, yellow and black; autoIndex, which may be NULL, receives the
 * position of the filter that the automatic choice takes, 4 for none of them. */
OB_EXPORT int32_t OB_GetDensities(float* densities, int32_t* autoIndex, int32_t index);
/* Option keys and the values of "MeasurementMode" are compared without regard to case. */
OB_EXPORT int32_t OB_SetOption(const char* key, const char* value);
/* On failure the previous answer stands; "LastError" says why. */
OB_EXPORT const char* OB_GetOption(const char* key);
/* The white of the paper that densities are measured against: 36 values. */
OB_EXPORT int32_t OB_SetSubstrate(const float* spectrum);

#ifdef __cplusplus
}
#endif

#endif
