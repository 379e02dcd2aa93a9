import os

import pytest

import orbel


def calibrated(sim, instrument, mode="reflectance"):
    sim.place("black" if mode in ("emission", "ambient") else "tile")
    instrument.calibrate(mode)


def test_a_measurement_gives_the_spectrum_with_its_wavelengths_and_its_colour(sim, instrument):
    calibrated(sim, instrument)
    sim.place("sample:grey50")
    sample = instrument.measure()
    assert list(sample.wavelengths) == list(range(380, 731, 10))
    assert all(abs(value - 0.5) < 0.03 for value in sample.spectrum)
    assert sample.colour[0] == pytest.approx(76.07, abs=1.5)


def test_colour_under_chosen_conditions_leaves_the_options_as_they_were(sim, instrument):
    calibrated(sim, instrument)
    sim.place("sample:grey50")
    sample = instrument.measure(colour_space="CIEXYZ", observer="TenDegree")
    assert sample.colour[1] == pytest.approx(50.0, abs=3.0)
    assert instrument.option("colour_space") == "CIELab"
    assert instrument.colour(0)[0] == pytest.approx(76.07, abs=1.5)


def test_a_scan_gives_the_patches_of_the_strip(sim, instrument):
    calibrated(sim, instrument, "scan")
    sim.strip("builtin:grey8")
    patches = instrument.scan()
    assert len(patches) >= 1
    assert all(len(patch.spectrum) == 36 for patch in patches)


@pytest.mark.parametrize("mode, target", [("emission", "display:white"), ("ambient", "light:daylight")])
def test_emission_and_ambient_light_see_the_light(sim, instrument, mode, target):
    calibrated(sim, instrument, mode)
    sim.place(target)
    assert max(getattr(instrument, mode)().spectrum) > 0


@pytest.mark.parametrize(
    "act, error, code",
    [
        (lambda instrument: instrument.set(mode="Nonsense"), orbel.InvalidMeasurementMode, 6),
        (lambda instrument: instrument.spectrum(index=-2), orbel.NoDataAvailable, 8),
        (lambda instrument: instrument.densities(), orbel.NoSubstrateWhiteReference, 5),
    ],
)
def test_each_failure_raises_the_exception_of_its_code_with_the_modules_text(sim, instrument, act, error, code):
    calibrated(sim, instrument)
    instrument.measure()
    with pytest.raises(error) as raised:
        act(instrument)
    assert raised.value.code == code
    assert raised.value.last_error == instrument.info("LastError") != ""


def test_an_unplugged_instrument_cannot_be_entered(sim):
    sim.unplug()
    try:
        with pytest.raises(orbel.DeviceNotConnected):
            with orbel.Instrument():
                pass
    finally:
        sim.plug()


def test_the_package_has_the_version_of_the_build():
    assert orbel.__version__ == os.environ.get("ORBEL_VERSION", orbel.__version__)
