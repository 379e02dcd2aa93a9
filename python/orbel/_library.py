"""The module's fourteen functions through ctypes. ORBEL_LIBRARY names a library other than the
installed liborbel.so.1, such as the one of a build tree."""
import ctypes
import os

from .errors import error_for

SPECTRUM_POINTS = 36

_float_p = ctypes.POINTER(ctypes.c_float)
_int_p = ctypes.POINTER(ctypes.c_int32)

_SIGNATURES = {
    "OB_GetDeviceInfo": (ctypes.c_char_p, [ctypes.c_char_p]),
    "OB_IsConnected": (ctypes.c_int32, []),
    "OB_KeyPressed": (ctypes.c_int32, []),
    "OB_GetNumberOfAvailableSamples": (ctypes.c_int32, []),
    "OB_Calibrate": (ctypes.c_int32, []),
    "OB_TriggerMeasurement": (ctypes.c_int32, []),
    "OB_TriggerCountedScan": (ctypes.c_int32, [ctypes.c_int32]),
    "OB_GetSpectrum": (ctypes.c_int32, [_float_p, ctypes.c_int32]),
    "OB_GetTriStimulus": (ctypes.c_int32, [_float_p, ctypes.c_int32]),
    "OB_GetDensity": (ctypes.c_int32, [_float_p, ctypes.c_int32]),
    "OB_GetDensities": (ctypes.c_int32, [_float_p, _int_p, ctypes.c_int32]),
    "OB_SetOption": (ctypes.c_int32, [ctypes.c_char_p, ctypes.c_char_p]),
    "OB_GetOption": (ctypes.c_char_p, [ctypes.c_char_p]),
    "OB_SetSubstrate": (ctypes.c_int32, [_float_p]),
}

_module = None


def module():
    """The loaded module, loaded at the first call."""
    global _module
    if _module is None:
        library = ctypes.CDLL(os.environ.get("ORBEL_LIBRARY") or "liborbel.so.1")
        for name, (result, arguments) in _SIGNATURES.items():
            function = getattr(library, name)
            function.restype = result
            function.argtypes = arguments
        _module = library
    return _module


def text(answer):
    return answer.decode("utf-8", "replace") if answer is not None else ""


def device_info(key):
    return text(module().OB_GetDeviceInfo(key.encode()))


def call(name, *arguments):
    """Calls a status function; a code other than 0 raises its exception."""
    code = getattr(module(), name)(*arguments)
    if code != 0:
        raise error_for(name, code, device_info("LastError"))
    return code


def floats(count):
    return (ctypes.c_float * count)()
