/* A host written in C that does what a host does with an instrument attached: a virtual one in a
 * directory of its own, or the one that runs already where orbel-sim usb-run wraps this program
 * (SimControl.h). Only orbel.h and the shared library are used to reach the module. */
#include <math.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "SimControl.h"
#include "orbel.h"

static int failures = 0;

static void Fail(const char* what, const char* detail)
{
    ++failures;
    fprintf(stderr, "FAILED %s: %s\n", what, detail);
}

static void Place(const char* target)
{
    char arguments[256];
    snprintf(arguments, sizeof arguments, "place %s", target);
    if (Sim(arguments) != 0) {
        Fail("orbel-sim place", target);
    }
}

/* A code other than expected fails and says what "LastError" says. */
static int Expect(const char* what, int32_t actual, int32_t expected)
{
    char detail[512];
    if (actual == expected) {
        return 1;
    }
    snprintf(
        detail, sizeof detail, "code %d, expected %d; %s", (int)actual, (int)expected, OB_GetDeviceInfo("LastError"));
    Fail(what, detail);
    return 0;
}

static void ExpectText(const char* what, const char* actual, const char* expected)
{
    char detail[512];
    if (strcmp(actual, expected) != 0) {
        snprintf(detail, sizeof detail, "\"%s\", expected \"%s\"", actual, expected);
        Fail(what, detail);
    }
}

static void ExpectNear(const char* what, float actual, float expected, float tolerance)
{
    char detail[128];
    if (!(fabsf(actual - expected) <= tolerance)) {
        snprintf(detail, sizeof detail, "%g, expected %g within %g", actual, expected, tolerance);
        Fail(what, detail);
    }
}

static int HasSignal(const float* spectrum)
{
    int i;
    for (i = 0; i < 36; ++i) {
        if (spectrum[i] > 0.0f) {
            return 1;
        }
    }
    return 0;
}

static void CheckReflectance(void)
{
    float spectrum[36];
    float lab[3];
    float xyz[3];
    float paper[36];
    float density = 0.0f;
    float densities[4];
    int32_t autoIndex = -1;
    int i;

    Expect("mode", OB_SetOption("MeasurementMode", "SingleReflectance"), OB_NoError);
    Expect("illumination", OB_SetOption("Colorimetric.Illumination", "D65"), OB_NoError);
    Expect("observer", OB_SetOption("Colorimetric.Observer", "TwoDegree"), OB_NoError);
    Expect("OB_IsConnected", OB_IsConnected(), OB_NoError);
    Place("tile");
    Expect("OB_Calibrate", OB_Calibrate(), OB_NoError);
    Place("sample:grey50");
    Expect("OB_TriggerMeasurement", OB_TriggerMeasurement(), OB_NoError);
    Expect("OB_GetNumberOfAvailableSamples", OB_GetNumberOfAvailableSamples(), 1);

    if (Expect("OB_GetSpectrum", OB_GetSpectrum(spectrum, 0), OB_NoError)) {
        for (i = 0; i < 36; ++i) {
            ExpectNear("reflectance of grey50", spectrum[i], 0.5f, 0.03f);
        }
    }
    if (Expect("OB_GetTriStimulus CIELab", OB_GetTriStimulus(lab, 0), OB_NoError)) {
        ExpectNear("L* of grey50", lab[0], 76.07f, 1.5f);
        ExpectNear("a* of grey50", lab[1], 0.0f, 1.5f);
    }
    Expect("CIEXYZ", OB_SetOption("ColorSpaceDescription.Type", "CIEXYZ"), OB_NoError);
    if (Expect("OB_GetTriStimulus CIEXYZ", OB_GetTriStimulus(xyz, -1), OB_NoError)) {
        ExpectNear("Y of grey50", xyz[1], 50.0f, 3.0f);
    }
    Expect("index -2", OB_GetSpectrum(spectrum, -2), OB_NoDataAvailable);
    ExpectText("LastError of index -2", OB_GetDeviceInfo("LastError"), "no data available index-2 is out of range");

    Expect("density without substrate", OB_GetDensity(&density, 0), OB_NoSubstrateWhiteReference);
    for (i = 0; i < 36; ++i) {
        paper[i] = 0.9f;
    }
    Expect("OB_SetSubstrate", OB_SetSubstrate(paper), OB_NoError);
    Expect("OB_GetDensity", OB_GetDensity(&density, 0), OB_NoError);
    ExpectNear("density of grey50 on paper 0.9", density, 0.255f, 0.05f);
    Expect("OB_GetDensities", OB_GetDensities(densities, &autoIndex, 0), OB_NoError);
    if (autoIndex < 0 || autoIndex > 4) {
        Fail("OB_GetDensities", "automatic filter outside 0 to 4");
    }
    ExpectText("filter mode after OB_GetDensities", OB_GetOption("Colorimetric.DensityFilterMode"), "Auto");
    ExpectText("SerialNumber", OB_GetDeviceInfo("SerialNumber"), "1000001");
    ExpectText("serialnumber", OB_GetDeviceInfo("serialnumber"), "");
}

static void CheckKey(void)
{
    int tries;
    Expect("no key pressed", OB_KeyPressed(), OB_KeyNotPressed);
    if (Sim("press") != 0) {
        Fail("orbel-sim press", "failed");
    }
    for (tries = 0; tries < 200 && OB_KeyPressed() != OB_NoError; ++tries) {
        SimPause(10);
    }
    if (tries == 200) {
        Fail("OB_KeyPressed after press", "never 0");
    }
    Expect("press consumed", OB_KeyPressed(), OB_KeyNotPressed);
}

static void CheckScanning(void)
{
    float spectrum[36];
    int32_t patches;
    int32_t positions;

    Expect("recognition", OB_SetOption("Recognition", "yes"), OB_NoError);
    Expect("scanning mode", OB_SetOption("MeasurementMode", "ScanningReflectance"), OB_NoError);
    Place("tile");
    Expect("scanning calibration", OB_Calibrate(), OB_NoError);
    Sim("strip builtin:grey8");
    Expect("recognised scan", OB_TriggerMeasurement(), OB_NoError);
    patches = OB_GetNumberOfAvailableSamples();
    if (patches < 1) {
        Fail("recognised scan", "no patches");
    }
    Expect("no recognition", OB_SetOption("Recognition", "no"), OB_NoError);
    Sim("strip builtin:grey8");
    Expect("OB_TriggerCountedScan", OB_TriggerCountedScan(-1), OB_NoError);
    positions = OB_GetNumberOfAvailableSamples();
    if (positions <= patches) {
        Fail("raw scan", "not more positions than patches");
    }
    if (Expect("last raw position", OB_GetSpectrum(spectrum, positions - 1), OB_NoError) && !HasSignal(spectrum)) {
        Fail("last raw position", "no signal");
    }
}

static void CheckEmissionMode(const char* mode, const char* target)
{
    float spectrum[36];
    Expect(mode, OB_SetOption("MeasurementMode", mode), OB_NoError);
    Place("black");
    Expect("dark calibration", OB_Calibrate(), OB_NoError);
    Place(target);
    Expect("emission measurement", OB_TriggerMeasurement(), OB_NoError);
    if (Expect("emission spectrum", OB_GetSpectrum(spectrum, -1), OB_NoError) && !HasSignal(spectrum)) {
        Fail(target, "no signal");
    }
}

int main(int argumentCount, char** arguments)
{
    if (!SimStart(argumentCount, arguments)) {
        return 2;
    }

    CheckReflectance();
    CheckKey();
    CheckScanning();
    CheckEmissionMode("SingleEmission", "display:white");
    CheckEmissionMode("SingleAmbientLight", "light:daylight");

    if (failures != 0) {
        fprintf(stderr, "%d failures\n", failures);
        return 1;
    }
    printf("all checks passed\n");
    return 0;
}
