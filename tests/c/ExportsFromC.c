/* A host written in C: every exported function, called with null and odd arguments, answers a
 * code, and "LastError" says what the code says. Only orbel.h and the shared library are used. */
#include <limits.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "orbel.h"

static int failures = 0;

static const char* const codeTexts[] = {
    "no error",
    "device not ready",
    "device not connected",
    "device not calibrated",
    "unkown code \"4\"",
    "no substrate white reference set",
    "wrong measurement mode",
    "strip recognition failed",
    "no data available",
    "exception occured",
    "invalid argument",
    "unkown error",
};

static void Fail(const char* what, const char* detail)
{
    ++failures;
    fprintf(stderr, "FAILED %s: %s\n", what, detail);
}

static void ExpectCode(const char* what, int32_t actual, int32_t expected)
{
    char detail[64];
    if (actual != expected) {
        snprintf(detail, sizeof detail, "code %d, expected %d", (int)actual, (int)expected);
        Fail(what, detail);
    }
}

static void ExpectText(const char* what, const char* actual, const char* expected)
{
    if (actual == NULL) {
        Fail(what, "null text");
    } else if (strcmp(actual, expected) != 0) {
        char detail[512];
        snprintf(detail, sizeof detail, "\"%s\", expected \"%s\"", actual, expected);
        Fail(what, detail);
    }
}

static const char* LastError(void)
{
    return OB_GetDeviceInfo("LastError");
}

/* The code of a status function is the code of the store: "LastError" begins with its text. */
static void ExpectStoredCode(const char* what, int32_t code)
{
    const char* lastError = LastError();
    if (code < 0 || code > OB_UnknownError || code == OB_DeviceNotReady || code == OB_KeyNotPressed) {
        char detail[64];
        snprintf(detail, sizeof detail, "code %d is no result of a status function", (int)code);
        Fail(what, detail);
    } else if (strncmp(lastError, codeTexts[code], strlen(codeTexts[code])) != 0) {
        char detail[512];
        snprintf(detail, sizeof detail, "code %d but LastError \"%s\"", (int)code, lastError);
        Fail(what, detail);
    }
}

static void ExpectInvalidArgument(const char* what, int32_t code)
{
    ExpectCode(what, code, OB_InvalidArgument);
    ExpectText(what, LastError(), "invalid argument");
}

static void ExpectOneOf(const char* what, int32_t code, const int32_t* allowed, size_t count)
{
    size_t i;
    char detail[64];
    for (i = 0; i < count; ++i) {
        if (code == allowed[i]) {
            return;
        }
    }
    snprintf(detail, sizeof detail, "unexpected code %d", (int)code);
    Fail(what, detail);
}

static void CheckFreshStore(void)
{
    ExpectText("LastError before any status function", LastError(), "no error ");
}

static void CheckNullArguments(void)
{
    int32_t autoIndex = 0;
    int32_t code;
    float values[36];

    ExpectText("OB_GetDeviceInfo(NULL)", OB_GetDeviceInfo(NULL), "invalid argument");
    ExpectText("LastError after OB_GetDeviceInfo(NULL)", LastError(), "invalid argument");

    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    ExpectText("OB_GetDeviceInfo(Version)", OB_GetDeviceInfo("Version"), "1.0.5");
    ExpectText("OB_GetOption(NULL) keeps the answer before", OB_GetOption(NULL), "1.0.5");
    ExpectText("LastError after OB_GetOption(NULL)", LastError(), "invalid argument");

    ExpectInvalidArgument("OB_GetSpectrum(NULL)", OB_GetSpectrum(NULL, 0));
    ExpectInvalidArgument("OB_GetTriStimulus(NULL)", OB_GetTriStimulus(NULL, -1));
    ExpectInvalidArgument("OB_GetDensity(NULL)", OB_GetDensity(NULL, 0));
    ExpectInvalidArgument("OB_GetDensities(NULL, &autoIndex)", OB_GetDensities(NULL, &autoIndex, 0));
    ExpectInvalidArgument("OB_GetDensities(NULL, NULL)", OB_GetDensities(NULL, NULL, 0));
    ExpectInvalidArgument("OB_SetOption(NULL, value)", OB_SetOption(NULL, "D50"));
    ExpectInvalidArgument("OB_SetOption(key, NULL)", OB_SetOption("Colorimetric.Illumination", NULL));
    ExpectInvalidArgument("OB_SetOption(NULL, NULL)", OB_SetOption(NULL, NULL));
    ExpectInvalidArgument("OB_SetSubstrate(NULL)", OB_SetSubstrate(NULL));

    memset(values, 0, sizeof values);
    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    code = OB_GetDensities(values, NULL, 0);
    if (code == OB_InvalidArgument) {
        Fail("OB_GetDensities(values, NULL)", "a null autoIndex is no invalid argument");
    }
    ExpectStoredCode("OB_GetDensities(values, NULL)", code);
}

static void CheckFailureThenSuccess(void)
{
    ExpectCode("unknown mode", OB_SetOption("MeasurementMode", "Bogus"), OB_InvalidMeasurementMode);
    ExpectText("LastError after unknown mode", LastError(), "wrong measurement mode");
    ExpectCode("mode in odd case", OB_SetOption("measurementMODE", "scanningreflectance"), OB_NoError);
    ExpectText("LastError after success", LastError(), "no error");
    ExpectText("OB_GetOption(MeasurementMode)", OB_GetOption("MeasurementMode"), "ScanningReflectance");
    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
    ExpectText("mode after reset all", OB_GetDeviceInfo("MeasurementMode"), "SingleReflectance");

    ExpectCode(
        "OB_TriggerCountedScan(INT32_MIN) in mode 3", OB_TriggerCountedScan(INT32_MIN), OB_InvalidMeasurementMode);
    ExpectCode("OB_TriggerCountedScan(0) in mode 3", OB_TriggerCountedScan(0), OB_InvalidMeasurementMode);
    ExpectCode(
        "OB_TriggerCountedScan(INT32_MAX) in mode 3", OB_TriggerCountedScan(INT32_MAX), OB_InvalidMeasurementMode);
    ExpectText("LastError after counted scan", LastError(), "wrong measurement mode");
}

/* Whatever the instrument's state, these answer codes that the store confirms and never write
 * past the number of values they are given. */
static void CheckInstrumentCalls(void)
{
    float spectrum[40];
    float three[4];
    float one[2];
    float four[5];
    int32_t autoIndex = -1;
    int i;
    const float canary = -12345.0f;

    for (i = 0; i < 40; ++i) {
        spectrum[i] = canary;
    }
    three[3] = canary;
    one[1] = canary;
    four[4] = canary;

    ExpectStoredCode("OB_Calibrate", OB_Calibrate());
    ExpectStoredCode("OB_TriggerMeasurement", OB_TriggerMeasurement());
    ExpectStoredCode("OB_GetSpectrum(-2)", OB_GetSpectrum(spectrum, -2));
    ExpectStoredCode("OB_GetSpectrum(INT32_MAX)", OB_GetSpectrum(spectrum, INT32_MAX));
    ExpectStoredCode("OB_GetTriStimulus(INT32_MIN)", OB_GetTriStimulus(three, INT32_MIN));
    ExpectStoredCode("OB_GetDensity", OB_GetDensity(one, 0));
    ExpectStoredCode("OB_GetDensities", OB_GetDensities(four, &autoIndex, -1));
    ExpectStoredCode("OB_SetSubstrate", OB_SetSubstrate(spectrum));
    ExpectCode("scanning mode", OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    ExpectStoredCode("OB_TriggerCountedScan(-1) in mode 4", OB_TriggerCountedScan(-1));
    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);

    for (i = 36; i < 40; ++i) {
        if (spectrum[i] != canary) {
            Fail("OB_GetSpectrum", "wrote past 36 values");
        }
    }
    if (three[3] != canary || one[1] != canary || four[4] != canary) {
        Fail("result functions", "wrote past the values they give");
    }
    if (OB_GetNumberOfAvailableSamples() < 0) {
        Fail("OB_GetNumberOfAvailableSamples", "negative count");
    }
}

static void CheckQuestionsLeaveTheStoreAlone(void)
{
    const int32_t connection[] = {OB_NoError, OB_DeviceNotConnected, OB_UnknownError};
    const int32_t key[] = {OB_NoError, OB_DeviceNotConnected, OB_KeyNotPressed, OB_UnknownError};

    ExpectCode("unknown mode", OB_SetOption("MeasurementMode", ""), OB_InvalidMeasurementMode);
    ExpectOneOf("OB_IsConnected", OB_IsConnected(), connection, 3);
    ExpectOneOf("OB_KeyPressed", OB_KeyPressed(), key, 4);
    ExpectText("LastError after the questions", LastError(), "wrong measurement mode");
    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
}

static void CheckOddTexts(void)
{
    static const char highBytes[] = {(char)0xff, (char)0xfe, (char)0x80, '%', 'K', 'E', 'Y', '%', 0};
    char* longText = malloc(5001);
    const char* keys[4];
    int i;

    if (longText == NULL) {
        Fail("malloc", "no memory for the test");
        return;
    }
    memset(longText, 'x', 5000);
    longText[5000] = '\0';
    keys[0] = "";
    keys[1] = longText;
    keys[2] = highBytes;
    keys[3] = "LASTERROR";

    for (i = 0; i < 4; ++i) {
        if (OB_GetDeviceInfo(keys[i]) == NULL) {
            Fail("OB_GetDeviceInfo(odd key)", "null answer");
        }
        ExpectStoredCode("OB_SetOption(odd key)", OB_SetOption(keys[i], keys[i]));
        if (OB_GetOption(keys[i]) == NULL) {
            Fail("OB_GetOption(odd key)", "null answer");
        }
        ExpectStoredCode("OB_SetOption(mode, odd value)", OB_SetOption("MeasurementMode", keys[i]));
    }
    free(longText);
    ExpectCode("reset all", OB_SetOption("MeasurementMode", "ResetAll"), OB_NoError);
}

int main(void)
{
    CheckFreshStore();
    CheckNullArguments();
    CheckFailureThenSuccess();
    CheckInstrumentCalls();
    CheckQuestionsLeaveTheStoreAlone();
    CheckOddTexts();
    if (failures != 0) {
        fprintf(stderr, "%d failures\n", failures);
        return 1;
    }
    printf("all checks passed\n");
    return 0;
}
