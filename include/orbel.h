/* Orbel: the module of the hand-held USB spectrophotometer.
 *
 * Fourteen plain functions. Status functions answer one of the result codes below; the text
 * behind the last failure is OB_GetDeviceInfo("LastError"), the text of the code followed by
 * the reason. No function lets an exception out.
 *
 * Buffers. Spectra are 36 floats, 380 nm to 730 nm in steps of 10 nm. Every output buffer is
 * the caller's: allocated by it, of the size each function names, and never kept by the module,
 * which writes that many values and is given no length to check. The texts returned by
 * OB_GetDeviceInfo and OB_GetOption belong to the module and stay valid until the calling
 * thread calls either function again; copy them. A null pointer argument answers
 * OB_InvalidArgument (10), except the autoIndex of OB_GetDensities.
 *
 * Codes every status function may answer, beyond those each function names:
 *   9  OB_ExceptionOccured    a failure of the module or the instrument that has no code of
 *                             its own; "LastError" holds its text.
 *   11 OB_UnknownError        a failure that could not even be stored, or the instrument is in
 *                             use by another process.
 * Every function that talks to the instrument may also answer
 *   2  OB_DeviceNotConnected  the instrument is gone or stopped answering; the connection is
 *                             reset, and the next call finds it gone or open again.
 * Code 1 (OB_DeviceNotReady) is reserved and never answered.
 *
 * The first call of any function opens the instrument; there is no open or close function.
 * Which calls may run on which threads, and how long a call may wait for another: see Threads
 * and time bounds. */

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
 *   An instrument that is attached but doesn't open is tried again by each call, once a call.
 * A call that runs out of its bound answers 2 when the instrument has gone, else 9 with the
 * failing step in "LastError". */

#ifndef ORBEL_H
#define ORBEL_H

#include <stdint.h>

#include "orbel_version.h"

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
 * "AvailableSamples", "Connection", "SerialNumber", ...). A null key answers "invalid argument"
 * and stores code 10; any other failure answers its full error text and stores its code. A
 * success leaves "LastError" as it was. "Connection" looks for the instrument on the bus and
 * opens it again when it has come back; "SerialNumber" reads the instrument's memory; the other
 * keys don't talk to it.
 * The text belongs to the module; see Buffers above. */
OB_EXPORT const char* OB_GetDeviceInfo(const char* key);

/* Whether an instrument is attached: 0 connected, 2 not connected, 11 on a failure of the
 * module. Looks for the instrument on the bus, and opens it again when it has come back.
 * Leaves "LastError" alone. */
OB_EXPORT int32_t OB_IsConnected(void);

/* Whether the measurement key was pressed since the last question: 0 pressed, 4 not pressed,
 * 2 not connected, 9 attached but doesn't open (the next call that stores its outcome says
 * why), 11 on any other failure. Reads and clears the latch that the instrument's
 * key sets, without a transfer, so that each press answers 0 once. Leaves "LastError" alone. */
OB_EXPORT int32_t OB_KeyPressed(void);

/* The number of samples of the last measurement of the current mode: 1 after a spot
 * measurement, one per position or per recognised patch after a scan; 0 when nothing has been
 * measured or the module can't be reached; -1 on any other failure. Doesn't talk to the
 * instrument. */
OB_EXPORT int32_t OB_GetNumberOfAvailableSamples(void);

/* Calibrates the instrument for the current mode: in the reflectance and scanning modes on the
 * white tile, which must lie under the aperture, storing the white in the instrument; in the
 * emission and ambient-light modes a dark measurement with the lamp off. Drops the results of
 * the current mode, even when it fails.
 * 0 calibrated; 2 not connected; 3 the dark or the white was not valid (no tile, stray light);
 * 9 and 11 as above.
 * Talks to the instrument: a dark and up to two whites of a hundred readings each, a few
 * seconds, and a wait for the instrument's lock (see Threads and time bounds). */
OB_EXPORT int32_t OB_Calibrate(void);

/* Measures in the current mode ("MeasurementMode"): a spot, a scan of a strip, a display or
 * the ambient light. The samples replace those of the last measurement of this mode; a failed
 * measurement leaves the earlier ones readable.
 * 0 measured; 2 not connected; 3 the mode needs a calibration first; 7 in the scanning mode
 * with recognition, the strip could not be split into patches (drawn too fast or too slow);
 * 9 and 11 as above.
 * Talks to the instrument and blocks for the measurement: a spot takes about a second (the lamp
 * is given a second between two measurements), a scan lasts until the instrument ends the
 * strip; and a wait for the instrument's lock (see Threads and time bounds). */
OB_EXPORT int32_t OB_TriggerMeasurement(void);

/* OB_TriggerMeasurement for the scanning mode with the count of readings per packet that goes
 * to the instrument, 1 to 25; 0 or less leaves the instrument's own count.
 * 6 in any other mode and 10 for a count above 25, both without talking to the instrument;
 * otherwise the codes, the blocking and the samples of OB_TriggerMeasurement. */
OB_EXPORT int32_t OB_TriggerCountedScan(int32_t count);

/* The spectrum of sample index of the last measurement into spectrum, 36 floats: reflectance
 * factors (1.0 the white) in the reflectance modes, the instrument's emission values in the
 * emission modes. index counts from 0; -1 is the same as 0.
 * 0 written; 8 nothing measured, or index out of range ("LastError" says which); 10 spectrum is
 * null; 9 and 11 as above. Doesn't talk to the instrument. */
OB_EXPORT int32_t OB_GetSpectrum(float* spectrum, int32_t index);

/* The colour values of sample index into tristimulus, 3 floats, in the colour space of the
 * option "ColorSpaceDescription.Type" (L*, a*, b* by default; "CIEXYZ" gives X, Y, Z) under the
 * illuminant and observer of the options.
 * 0 written; 8 nothing measured, or index out of range; 10 tristimulus is null; 9 the options
 * name a computation that can't be made; 11 as above. Doesn't talk to the instrument. */
OB_EXPORT int32_t OB_GetTriStimulus(float* tristimulus, int32_t index);

/* The density of sample index into density, 1 float, under "Colorimetric.DensityStandard" and
 * "Colorimetric.DensityFilterMode"; with the mode "Auto", OB_GetDeviceInfo of that key then
 * names the filter that was used.
 * 0 written; 5 no substrate given with OB_SetSubstrate while "Colorimetric.WhiteBase" isn't
 * "Absolute"; 8 nothing measured, or index out of range; 10 density is null; 9 and 11 as above.
 * Doesn't talk to the instrument. */
OB_EXPORT int32_t OB_GetDensity(float* density, int32_t index);

/* Four densities, cyan, magenta, yellow and black; autoIndex, which may be NULL, receives the
 * position of the filter that the automatic choice takes, 4 for none of them. Leaves the option
 * "Colorimetric.DensityFilterMode" at "Black" when autoIndex is NULL, at "Auto" otherwise.
 * The codes of OB_GetDensity; 10 when densities is null. Doesn't talk to the instrument. */
OB_EXPORT int32_t OB_GetDensities(float* densities, int32_t* autoIndex, int32_t index);

/* Sets an option of the current mode, or with the key "MeasurementMode" the mode itself.
 * Option keys and the values of "MeasurementMode" are compared without regard to case.
 * 0 set; 6 an unknown measurement mode; 10 key or value is null, or a value that is no finite
 * number where one is needed (an integration time, a number of samples), named in "LastError";
 * 9 a key or value that the options refuse ("Modification not supported for key: ..."); 11 as
 * above. Setting the mode
 * "ResetAll" closes and opens the instrument again, a few control transfers; other options
 * don't talk to it. */
OB_EXPORT int32_t OB_SetOption(const char* key, const char* value);

/* The value of an option of the current mode, "Undefined" for an unknown key. On failure the
 * previous answer stands and "LastError" says why: code 10 for a null key. Doesn't talk to the
 * instrument. The text belongs to the module; see Buffers above. */
OB_EXPORT const char* OB_GetOption(const char* key);

/* The white of the paper that densities are measured against: 36 values, copied; the array
 * stays the caller's. Holds for every mode until the mode "ResetAll".
 * 0 set; 10 spectrum is null, or a value is not a finite number in the range of reflectances
 * (named in "LastError"), and the former substrate stays; 11 as above. Doesn't talk to the
 * instrument. */
OB_EXPORT int32_t OB_SetSubstrate(const float* spectrum);

#ifdef __cplusplus
}
#endif

#endif
