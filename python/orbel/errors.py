"""Every non-zero code of the module as an exception carrying the code and "LastError"."""


class OrbelError(Exception):
    """A call of the module answered a code other than 0."""

    code = None

    def __init__(self, function, code, last_error):
        super().__init__(f"{function}: code {code}, {last_error}")
        self.function = function
        self.code = code
        self.last_error = last_error


# The codes of orbel.h under their names there, each the exception class of its code.
_NAMES = {
    1: "DeviceNotReady",
    2: "DeviceNotConnected",
    3: "DeviceNotCalibrated",
    4: "KeyNotPressed",
    5: "NoSubstrateWhiteReference",
    6: "InvalidMeasurementMode",
    7: "StripRecognitionFailed",
    8: "NoDataAvailable",
    9: "ExceptionOccured",
    10: "InvalidArgument",
    11: "UnknownError",
}
_BY_CODE = {code: type(name, (OrbelError,), {"code": code}) for code, name in _NAMES.items()}
globals().update({error.__name__: error for error in _BY_CODE.values()})
__all__ = ["OrbelError", "error_for", *_NAMES.values()]


def error_for(function, code, last_error):
    """The exception of code; a code the module doesn't document is an OrbelError itself."""
    return _BY_CODE.get(code, OrbelError)(function, code, last_error)
