/* The instrument of a Linux host: started by the orbel-sim program named on the command line, or
 * the one that runs already where orbel-sim usb-run wraps the host (ORBEL_SIM_SERIAL names it). */
#define _POSIX_C_SOURCE 200809L
#define _DEFAULT_SOURCE
#include "SimControl.h"

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

static const char* simProgram = NULL;
static char ownDirectory[] = "/tmp/orbel-c-host-XXXXXX";
static const char* simDirectory = ownDirectory;
static char lockDirectory[512];

int Sim(const char* arguments)
{
    char command[1024];
    snprintf(command, sizeof command, "ORBEL_SIM_DIR=%s %s %s > /dev/null", simDirectory, simProgram, arguments);
    return system(command);
}

void SimPause(int milliseconds)
{
    usleep((useconds_t)milliseconds * 1000);
}

/* Runs at exit after the module has closed the instrument, as it was registered before the
 * module's first call. */
static void StopInstrument(void)
{
    char remove[600];
    Sim("stop");
    snprintf(remove, sizeof remove, "rm -rf %s", simDirectory);
    if (system(remove) != 0) {
        fprintf(stderr, "could not remove %s\n", simDirectory);
    }
}

int SimStart(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        fprintf(stderr, "usage: %s ORBEL_SIM\n", arguments[0]);
        return 0;
    }
    simProgram = arguments[1];
    if (getenv("ORBEL_SIM_SERIAL") != NULL && getenv("ORBEL_SIM_DIR") != NULL) {
        simDirectory = getenv("ORBEL_SIM_DIR");
    } else if (mkdtemp(ownDirectory) == NULL) {
        perror("mkdtemp");
        return 0;
    }
    snprintf(lockDirectory, sizeof lockDirectory, "%s/locks", simDirectory);
    setenv("ORBEL_SIM_DIR", simDirectory, 1);
    setenv("ORBEL_LOCK_DIR", lockDirectory, 1);
    if (simDirectory != ownDirectory) {
        return 1;
    }
    if (Sim("start --noise off --time-scale 0") != 0) {
        fprintf(stderr, "orbel-sim did not start\n");
        return 0;
    }
    atexit(StopInstrument);
    return 1;
}
