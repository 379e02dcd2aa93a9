/* The instrument of a host under Wine: the Linux side (WineHost.py) has started it and set
 * ORBEL_SIM_DIR. It runs each command that the host writes as a line "orbel-sim <arguments>" and
 * answers with the command's exit code on a line of its own. */
#include "SimControl.h"

#include <windows.h>

#include <stdio.h>
#include <stdlib.h>

int SimStart(int argumentCount, char** arguments)
{
    (void)argumentCount;
    (void)arguments;
    if (getenv("ORBEL_SIM_DIR") == NULL) {
        fprintf(stderr, "ORBEL_SIM_DIR is not set: run under WineHost.py\n");
        return 0;
    }
    return 1;
}

int Sim(const char* arguments)
{
    char answer[32];
    printf("orbel-sim %s\n", arguments);
    fflush(stdout);
    if (fgets(answer, sizeof answer, stdin) == NULL) {
        return -1;
    }
    return atoi(answer);
}

void SimPause(int milliseconds)
{
    Sleep((DWORD)milliseconds);
}
