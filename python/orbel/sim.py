"""The virtual instrument, plugged in from Python for tests and notebooks.

    with orbel.sim.start() as sim:
        sim.place("tile")

ORBEL_SIM names the orbel-sim program when it isn't the one on the PATH."""
import os
import shutil
import subprocess
import tempfile


def program():
    found = os.environ.get("ORBEL_SIM") or shutil.which("orbel-sim")
    if not found:
        raise FileNotFoundError("orbel-sim not found: install orbel-tools or set ORBEL_SIM")
    return found


class Sim:
    """A running virtual instrument in a directory of its own, which this process's module looks
    into through ORBEL_SIM_DIR. Stopping it unplugs it and removes the directory."""

    def __init__(self, directory, serial):
        self.directory = directory
        self.serial = serial

    def run(self, *arguments):
        """Runs an orbel-sim command for this instrument and answers what it prints."""
        command = [program(), *arguments, "--serial", str(self.serial)]
        environment = dict(os.environ, ORBEL_SIM_DIR=self.directory)
        return subprocess.run(command, env=environment, check=True, capture_output=True, text=True).stdout

    def place(self, target):
        """"tile", "black", "sample:<name>", "display:<name>", "light:<name>" and the rest of orbel-sim place."""
        self.run("place", target)

    def strip(self, spec, speed=None):
        self.run("strip", spec, *(["--speed", str(speed)] if speed is not None else []))

    def press(self):
        self.run("press")

    def unplug(self):
        self.run("unplug")

    def plug(self):
        self.run("plug")

    def stop(self):
        try:
            self.run("stop")
        finally:
            shutil.rmtree(self.directory, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.stop()
        return False


def start(serial=1000001, noise=False, time_scale=0.0):
    """Plugs in a virtual instrument; time_scale 0 answers at once, 1 as fast as the real one."""
    directory = tempfile.mkdtemp(prefix="orbel-sim-")
    os.environ["ORBEL_SIM_DIR"] = directory
    sim = Sim(directory, serial)
    subprocess.run(
        [program(), "start", "--serial", str(serial), "--noise", "on" if noise else "off", "--time-scale", str(time_scale)],
        env=dict(os.environ), check=True, capture_output=True, text=True)
    return sim
