"""The Orbel hand-held spectrophotometer from Python.

    import orbel
    with orbel.sim.start() as sim, orbel.Instrument() as instrument:
        sim.place("tile")
        instrument.calibrate()
        sim.place("sample:grey50")
        print(instrument.measure(colour_space="CIELab", illumination="D50").colour)

orbel.colour adds colour temperature, colour rendering and colour differences by the formula named.
"""
from . import colour, errors, sim
from .errors import *  # noqa: F401,F403 - the exception class of each code
from .instrument import MODES, OPTIONS, WAVELENGTHS, Instrument, Sample

__version__ = "1.0.0"
__all__ = ["Instrument", "Sample", "MODES", "OPTIONS", "WAVELENGTHS", "colour", "sim", *errors.__all__]
