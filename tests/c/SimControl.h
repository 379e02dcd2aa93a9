/* How a C host test drives its virtual instrument: on Linux it starts orbel-sim itself; under
 * Wine the Linux side has started it, and runs its commands on the host's request. */
#ifndef ORBEL_TESTS_SIM_CONTROL_H
#define ORBEL_TESTS_SIM_CONTROL_H

#ifdef __cplusplus
extern "C" {
#endif

/* Starts the instrument in a directory of its own, or finds it started, and points the module at
 * it; the instrument stops at exit. 0 when there is none to use. */
int SimStart(int argumentCount, char** arguments);

/* Runs an orbel-sim command on the instrument, such as "place tile"; its exit code. */
int Sim(const char* arguments);

void SimPause(int milliseconds);

#ifdef __cplusplus
}
#endif

#endif
