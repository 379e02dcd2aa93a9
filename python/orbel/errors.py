"""Every non-zero code of the module as an exception carrying the code and "LastError"."""


class OrbelError(Exception):
    """A call of the module answered a code other than 0."""

    code = None

    def __init__(self, function, code, last_error):
        super().__init__(f"{function}: code {code}, {last_error}")
        self.function = function
        self.code = code
        self.last_error = last_error


class DeviceNotReady(OrbelError):
    code = 1


class DeviceNotConnected(OrbelError):
    code = 2


class DeviceNotCalibrated(OrbelError):
    code = 3


class KeyNotPressed(OrbelError):
    code = 4


class NoSubstrateWhiteReference(OrbelError):
    code = 5


class InvalidMeasurementMode(OrbelError):
    code = 6


class StripRecognitionFailed(OrbelError):
    code = 7


class NoDataAvailable(OrbelError):
    code = 8


class ExceptionOccured(OrbelError):
    code = 9


class InvalidArgument(OrbelError):
    code = 10


class UnknownError(OrbelError):
    code = 11


_BY_CODE = {error.code: error for error in OrbelError.__subclasses__()}


def error_for(function, code, last_error):
    """The exception of code; a code the module doesn't document is an OrbelError itself."""
    return _BY_CODE.get(code, OrbelError)(function, code, last_error)
