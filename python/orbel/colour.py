"""Colour values that the module's functions don't answer: correlated colour temperature, Duv,
colour rendering and colour differences by the formula named. The orbel program computes them
with the module's own colour code (orbel convert), one run for each call, whatever the number of
spectra.

    orbel.colour.emission_metrics([spectrum])[0].cct
    orbel.colour.delta_e([sample], reference, formula="CIE94")

The program is the one ORBEL_PROGRAM names, else the one beside the module loaded (as in a
build tree), else the one on the PATH."""
import json
import os
import shutil
import subprocess
import tempfile
from dataclasses import dataclass, field

from . import _library as lib


class ProgramError(Exception):
    """orbel convert refused the spectra or the options; the message is the program's."""

    def __init__(self, status, message):
        super().__init__(message)
        self.status = status


@dataclass
class Light:
    """A light's colour: cct (K), duv and ra, and r the special indices by number, r[9] being R9;
    None and an empty r where the light has no correlated colour temperature (outside 1000 K to
    100 000 K). illuminance is Y under the illuminant Emission: lx for ambient light, and for a
    display the same number is its luminance in cd/m²."""

    illuminance: float
    cct: float = None
    duv: float = None
    ra: float = None
    r: dict = field(default_factory=dict)


def program():
    named = os.environ.get("ORBEL_PROGRAM")
    if named:
        if not _runnable(named):
            raise FileNotFoundError(f"ORBEL_PROGRAM names no program that runs: {named}")
        return named
    found = next((path for path in _beside_module() if _runnable(path)), None) or shutil.which("orbel")
    if not found:
        raise FileNotFoundError("the orbel program is not found: install orbel-tools or set ORBEL_PROGRAM")
    return found


def _runnable(path):
    return os.path.isfile(path) and os.access(path, os.X_OK)


def _beside_module():
    """Where a build tree or an installation by hand keeps the program, seen from the module."""
    name = lib.module()._name
    if os.sep not in name:
        return []
    directory = os.path.dirname(os.path.abspath(name))
    return [os.path.join(directory, "orbel"), os.path.join(directory, "tools", "orbel")]


def _spectrum(sample):
    return [float(value) for value in getattr(sample, "spectrum", sample)]


def _convert(spectra, *options):
    """The JSON records orbel convert writes for spectra (each 36 values or a Sample)."""
    records = [{"id": str(index), "spectrum": _spectrum(spectrum)} for index, spectrum in enumerate(spectra)]
    if not records:
        return []
    run = subprocess.run([program(), "convert", "--input", "-", "--format", "json", *options],
                         input=json.dumps(records), capture_output=True, text=True)
    if run.returncode != 0:
        raise ProgramError(run.returncode, run.stderr.strip())
    return json.loads(run.stdout)


def delta_e(samples, reference, formula="CIEDE2000", illumination=None, observer=None):
    """The colour difference of each sample from the reference (spectra or Samples) by a formula of
    orbel convert: CIEDE2000, CIE94, CMC (2:1), CIE76, CIELuv, LABmg, FMCII and the module's names."""
    with tempfile.NamedTemporaryFile("w", suffix=".json", prefix="orbel-reference-") as file:
        json.dump([{"spectrum": _spectrum(reference)}], file)
        file.flush()
        options = ["--reference", file.name, "--delta-e", formula]
        options += ["--illuminant", illumination] if illumination else []
        options += ["--observer", observer] if observer else []
        return [record["deltaE"] for record in _convert(samples, *options)]


def emission_metrics(spectra):
    """A Light for each emission or ambient-light spectrum (36 values, or a Sample)."""
    return [_light(record) for record in _convert(spectra, "--light")]


def _light(record):
    if record["cct"] is None:
        return Light(record["xyz"][1])
    special = {number: value for number, value in enumerate(record["r"], start=1)}
    return Light(record["xyz"][1], record["cct"], record["duv"], record["ra"], special)
