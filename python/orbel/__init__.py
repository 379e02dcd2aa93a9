"""The Orbel hand-held spectrophotometer from Python.

    import orbel
    with orbel.sim.start() as sim, orbel.Instrument() as instrument:
        sim.place("tile")
        instrument.calibrate()
        sim.place("sample:grey50")
        print(instrument.measure(colour_space="CIELab", illumination="D50").colour)
"""
from . import sim
from .errors import *  # noqa: F401,F403 - the exception of each code belongs to the package
from .instrument import MODES, OPTIONS, WAVELENGTHS, Instrument, Sample

__version__ = "1.0.0"
__all__ = ["Instrument", "Sample", "MODES", "OPTIONS", "WAVELENGTHS", "sim", "OrbelError"]
