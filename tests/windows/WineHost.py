#!/usr/bin/env python3
"""Runs a Windows test program under wine64 beside a virtual instrument of its own: starts
orbel-sim in a private directory, runs each orbel-sim command that the program asks for with a
line "orbel-sim <arguments>" on its standard output and answers with the exit code, and stops
the instrument at the end. Every other line of the program is passed on. Exits with the
program's exit code.

Usage: WineHost.py ORBEL_SIM PROGRAM.exe [ARGUMENT...]"""
import os
import shutil
import subprocess
import sys
import tempfile

REQUEST = "orbel-sim "


def windows_path(path):
    return "Z:" + path.replace("/", "\\")


def main():
    sim, program, *arguments = sys.argv[1:]
    directory = tempfile.mkdtemp(prefix="orbel-wine-")
    sim_environment = dict(os.environ, ORBEL_SIM_DIR=directory)

    def run_sim(words):
        return subprocess.run([sim, *words.split()], env=sim_environment, stdout=subprocess.DEVNULL).returncode

    try:
        if run_sim("start --noise off --time-scale 0") != 0:
            print("orbel-sim did not start", file=sys.stderr)
            return 2
        host_environment = dict(os.environ, ORBEL_SIM_DIR=windows_path(directory),
                                ORBEL_LOCK_DIR=windows_path(directory + "/locks"))
        host = subprocess.Popen(["wine64", program, *arguments], env=host_environment, text=True,
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        for line in host.stdout:
            line = line.rstrip("\r\n")
            if line.startswith(REQUEST):
                host.stdin.write(f"{run_sim(line[len(REQUEST):])}\n")
                host.stdin.flush()
            else:
                print(line, flush=True)
        return host.wait()
    finally:
        run_sim("stop")
        shutil.rmtree(directory, ignore_errors=True)


if __name__ == "__main__":
    sys.exit(main())
