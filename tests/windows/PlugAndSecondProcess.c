/* What a Windows host meets beyond measuring: the cable pulled and plugged in again, and a
 * second process of the module refused while the first holds the instrument. */
#include <windows.h>

#include <stdio.h>
#include <string.h>

#include "SimControl.h"
#include "orbel.h"

static const char secondProcess[] = "--second";
static const char refusal[] = "Orbel aready in use by another process.";
static int failures = 0;

static void Expect(const char* what, int32_t actual, int32_t expected)
{
    if (actual != expected) {
        ++failures;
        fprintf(stderr, "FAILED %s: code %d, expected %d\n", what, (int)actual, (int)expected);
    }
}

/* The instrument's state reaches the module when it next looks at the bus. */
static void ExpectConnection(const char* what, int32_t expected)
{
    int tries;
    for (tries = 0; tries < 100 && OB_IsConnected() != expected; ++tries) {
        SimPause(20);
    }
    Expect(what, OB_IsConnected(), expected);
}

static int RunSecondProcess(void)
{
    wchar_t program[MAX_PATH];
    wchar_t commandLine[MAX_PATH + 16];
    STARTUPINFOW startup;
    PROCESS_INFORMATION process;
    DWORD exitCode = 1;
    ZeroMemory(&startup, sizeof startup);
    startup.cb = sizeof startup;
    GetModuleFileNameW(NULL, program, MAX_PATH);
    swprintf(commandLine, sizeof commandLine / sizeof commandLine[0], L"\"%ls\" %hs", program, secondProcess);
    if (!CreateProcessW(program, commandLine, NULL, NULL, FALSE, 0, NULL, NULL, &startup, &process)) {
        return -1;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return (int)exitCode;
}

static int RefusedAsSecond(void)
{
    const int refused = OB_IsConnected() == OB_UnknownError && OB_Calibrate() == OB_UnknownError &&
        strcmp(OB_GetDeviceInfo("Version"), refusal) == 0;
    return refused ? 0 : 1;
}

int main(int argumentCount, char** arguments)
{
    if (argumentCount == 2 && strcmp(arguments[1], secondProcess) == 0) {
        return RefusedAsSecond();
    }
    if (!SimStart(argumentCount, arguments)) {
        return 2;
    }
    ExpectConnection("plugged in", OB_NoError);
    Expect("orbel-sim unplug", Sim("unplug"), 0);
    ExpectConnection("unplugged", OB_DeviceNotConnected);
    Expect("orbel-sim plug", Sim("plug"), 0);
    ExpectConnection("plugged in again", OB_NoError);
    Expect("orbel-sim place tile", Sim("place tile"), 0);
    Expect("calibration after the plug", OB_Calibrate(), OB_NoError);
    Expect("second process", RunSecondProcess(), 0);

    if (failures != 0) {
        fprintf(stderr, "%d failures\n", failures);
        return 1;
    }
    printf("all checks passed\n");
    return 0;
}
