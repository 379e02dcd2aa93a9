"""The instrument as a Python object over the module's functions."""
import array
import ctypes
from dataclasses import dataclass, field

from . import _library as lib
from . import colour as colour_science
from . import errors

try:
    import numpy
except ImportError:
    numpy = None

WAVELENGTHS = tuple(range(380, 731, 10))

# The module's option keys under Python names.
OPTIONS = {
    "mode": "MeasurementMode",
    "recognition": "Recognition",
    "illumination": "Colorimetric.Illumination",
    "observer": "Colorimetric.Observer",
    "white_base": "Colorimetric.WhiteBase",
    "density_standard": "Colorimetric.DensityStandard",
    "density_filter_mode": "Colorimetric.DensityFilterMode",
    "filter": "Physical.Filter",
    "colour_space": "ColorSpaceDescription.Type",
    "vector": "ColorSpaceDescription.AbsoluteOrDeltaVector",
    "delta_e_formula": "ColorSpaceDescription.DeltaEFormula",
    "custom_condition": "CustomCondition",
}

MODES = {
    "reflectance": "SingleReflectance",
    "scan": "ScanningReflectance",
    "emission": "SingleEmission",
    "ambient": "SingleAmbientLight",
}


def _array(values):
    """Floats as a numpy array when numpy is there, else as an array of the standard library."""
    return numpy.array(values, dtype=numpy.float32) if numpy is not None else array.array("f", values)


@dataclass
class Sample:
    """One spectrum, 380 nm to 730 nm in steps of 10 nm, and its colour under the conditions asked."""

    spectrum: object
    colour: tuple
    conditions: dict = field(default_factory=dict)
    wavelengths: object = field(default_factory=lambda: _array(WAVELENGTHS))
    is_light: bool = False
    _light: object = field(default=None, repr=False)

    @property
    def light(self):
        """For emission and ambient light: an orbel.colour.Light (cct, duv, ra, r, illuminance), worked out by
        the orbel program when first asked for, so that a measurement never needs the program; else None."""
        if self.is_light and self._light is None:
            self._light = colour_science.emission_metrics([self.spectrum])[0]
        return self._light


class Instrument:
    """The instrument the module finds, real or virtual.

    The module keeps one instrument per process, so every Instrument object speaks to the same one.
    Used as a context manager it checks the connection on entry and drops every result on exit."""

    def __enter__(self):
        if not self.connected:
            raise errors.DeviceNotConnected("OB_IsConnected", 2, self.info("LastError"))
        return self

    def __exit__(self, *exception):
        self.set(mode="ResetAll")
        return False

    @property
    def connected(self):
        return lib.module().OB_IsConnected() == 0

    def key_pressed(self):
        """True once after the measurement key was pressed."""
        return lib.module().OB_KeyPressed() == 0

    def info(self, key):
        """An answer of OB_GetDeviceInfo, such as "Version", "SerialNumber" or "LastError"."""
        return lib.device_info(key)

    def set(self, **options):
        """Sets options by their Python names (see OPTIONS): set(illumination="D50", observer="TenDegree")."""
        for name, value in options.items():
            key = OPTIONS[name]
            lib.call("OB_SetOption", key.encode(), str(value).encode())

    def option(self, name):
        return lib.text(lib.module().OB_GetOption(OPTIONS[name].encode()))

    def calibrate(self, mode="reflectance"):
        """Calibrates for a mode: on the white tile, or dark for emission and ambient light."""
        self.set(mode=MODES[mode])
        lib.call("OB_Calibrate")

    def measure(self, **conditions):
        """One reflectance measurement; its colour under the conditions given (Python option names)."""
        return self._trigger("reflectance", conditions)[0]

    def scan(self, patches=None, recognition=True, **conditions):
        """A scan of a strip: the patches found, or with recognition=False every position read,
        or, with patches given, that many readings counted by the instrument."""
        self.set(mode=MODES["scan"], recognition="yes" if recognition else "no")
        if patches is None:
            lib.call("OB_TriggerMeasurement")
        else:
            lib.call("OB_TriggerCountedScan", patches)
        return self._samples(conditions)

    def emission(self, **conditions):
        return self._light(self._trigger("emission", conditions)[0])

    def ambient(self, **conditions):
        return self._light(self._trigger("ambient", conditions)[0])

    def colour(self, index=0, **conditions):
        """The colour of a sample of the last measurement under conditions; the options stay as they were."""
        previous = {name: self.option(name) for name in conditions}
        self.set(**conditions)
        try:
            values = lib.floats(3)
            lib.call("OB_GetTriStimulus", values, index)
            return tuple(values)
        finally:
            self.set(**previous)

    def spectrum(self, index=0):
        values = lib.floats(lib.SPECTRUM_POINTS)
        lib.call("OB_GetSpectrum", values, index)
        return _array(values)

    def set_substrate(self, spectrum):
        """The paper white that densities are measured against: 36 values."""
        values = lib.floats(lib.SPECTRUM_POINTS)
        values[:] = [float(value) for value in spectrum]
        lib.call("OB_SetSubstrate", values)

    def densities(self, index=0):
        """Cyan, magenta, yellow and black, and the filter the automatic choice takes (None for none)."""
        values = lib.floats(4)
        automatic = ctypes.c_int32()
        lib.call("OB_GetDensities", values, ctypes.byref(automatic), index)
        filters = ("cyan", "magenta", "yellow", "black")
        return dict(zip(filters, values)), filters[automatic.value] if automatic.value < 4 else None

    @staticmethod
    def _light(sample):
        sample.is_light = True
        return sample

    def _trigger(self, mode, conditions):
        self.set(mode=MODES[mode])
        lib.call("OB_TriggerMeasurement")
        return self._samples(conditions)

    def _samples(self, conditions):
        count = lib.module().OB_GetNumberOfAvailableSamples()
        return [Sample(self.spectrum(index), self.colour(index, **conditions), dict(conditions)) for index in range(count)]
