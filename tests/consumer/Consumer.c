/* A host of the installed module: it calibrates on the white tile of the instrument that is
 * plugged in and measures it. Exits 1 with the module's "LastError" on the first failure. */
#include <stdio.h>

#include <orbel.h>

static int Check(const char* what, int status)
{
    if (status != OB_NoError) {
        fprintf(stderr, "%s: code %d, %s\n", what, status, OB_GetDeviceInfo("LastError"));
    }
    return status == OB_NoError;
}

int main(void)
{
    float lab[3];
    printf("orbel %s, module %s\n", ORBEL_VERSION, OB_GetDeviceInfo("Version"));
    if (!Check("OB_IsConnected", OB_IsConnected()) || !Check("OB_Calibrate", OB_Calibrate()) ||
        !Check("OB_TriggerMeasurement", OB_TriggerMeasurement()) ||
        !Check("OB_GetTriStimulus", OB_GetTriStimulus(lab, 0))) {
        return 1;
    }
    printf("white tile of %s: L* %.1f a* %.1f b* %.1f\n", OB_GetDeviceInfo("SerialNumber"), lab[0], lab[1], lab[2]);
    return 0;
}
